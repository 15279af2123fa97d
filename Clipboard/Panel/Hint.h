#pragma once

#include "KeyCap.h"

#include <QRectF>

namespace Clipboard {

/// A key cap and what the key does.
struct Hint
{
    QString keys;
    QString word;

    static constexpr int spacing = 16; // between two hints

    /// Paints the hint from `left`, centred in `band`, and answers where it ends.
    qreal paint(QPainter& painter, const QRectF& band, qreal left, const KeyCap::Look& cap, const QColor& color) const;
};

} // namespace Clipboard
