#pragma once

#include <QString>

class QPainter;
class QRectF;

namespace Clipboard {

/// What a region says when it has nothing to show: a tile with a drawing, a title and a message.
struct EmptyContent
{
    QLatin1String icon;
    QString title;
    QString message; // may be empty
    QString more{};  // paragraphs below, wrapped

    /// Paints the block centred in `area`, a little above the middle; texts are elided to the area.
    void paint(QPainter& painter, const QRectF& area) const;
};

} // namespace Clipboard
