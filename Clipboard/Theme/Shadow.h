#pragma once

#include <QMargins>
#include <QRectF>

class QPainter;

namespace Clipboard {

/// A soft black shadow below a rounded card, as in CSS: vertical offset, blur radius, opacity.
struct Shadow
{
    int offset;
    int blur;
    qreal opacity;
    int radius; // of the card's corners
    bool operator==(const Shadow&) const = default;

    /// How far it reaches beyond the card on each side; a window needs this much transparent margin.
    [[nodiscard]] constexpr QMargins margins() const { return {blur, blur - offset, blur, blur + offset}; }
    /// Paints the shadow of `card`, and the dark pixel outside its outline. Leaves the card itself alone.
    void paint(QPainter& painter, const QRectF& card) const;
};

inline constexpr Shadow panelShadow{18, 48, 0.45, 14};
inline constexpr Shadow sheetShadow{16, 40, 0.35, 12};
inline constexpr Shadow toastShadow{10, 30, 0.40, 10};
inline constexpr Shadow dialogShadow{20, 56, 0.50, 14};

} // namespace Clipboard
