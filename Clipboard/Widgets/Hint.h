#pragma once

#include "KeyCap.h"

#include <QList>
#include <QRectF>

namespace Clipboard {

/// A key cap and what the key does.
struct Hint
{
    QString keys;
    QString word;
};

/// Paints hints beside each other from the left end of `band`, in its middle. Where they are too wide together they
/// stand closer; the last ones are left out when that is not enough.
void paintHints(QPainter& painter, const QRectF& band, const QList<Hint>& hints, const KeyCap::Look& cap,
                const QColor& color);

} // namespace Clipboard
