#pragma once

#include <QList>
#include <QRectF>
#include <QRegion>
#include <QString>

class QWidget;

namespace Clipboard::Testing {

/// A run of text as a widget drew it.
struct DrawnText
{
    QString text;
    QRectF box;   // in the coordinates of the widget that was asked
    QRegion clip; // what of it can be seen
};

/// Everything that the widget and its visible children draw as text.
[[nodiscard]] QList<DrawnText> drawnTexts(QWidget& widget);

} // namespace Clipboard::Testing
