#pragma once

#include <QFont>
#include <QStringView>

/// The type of the interface: the desktop's own families in the sizes and weights of one table.
namespace Clipboard::Fonts {

/// One line of the table. Sizes are logical pixels.
struct Style
{
    int pixelSize;
    int lineHeight;
    QFont::Weight weight;
    bool fixedWidth = false;
};

inline constexpr Style search{15, 20, QFont::Normal};
inline constexpr Style heading{15, 20, QFont::DemiBold};
inline constexpr Style body{13, 20, QFont::Normal};
inline constexpr Style bodyStrong{13, 20, QFont::DemiBold};
inline constexpr Style link{13, 18, QFont::Normal};
inline constexpr Style rowTitle{13, 18, QFont::Medium};
inline constexpr Style codeTitle{12, 18, QFont::Medium, true};
inline constexpr Style code{12, 18, QFont::Normal, true};
inline constexpr Style value{13, 18, QFont::Normal, true};
inline constexpr Style label{13, 18, QFont::Normal};
inline constexpr Style button{13, 18, QFont::Medium};
inline constexpr Style primaryButton{13, 18, QFont::DemiBold};
inline constexpr Style caption{12, 16, QFont::Normal};
inline constexpr Style chip{12, 16, QFont::Medium};
inline constexpr Style section{12, 16, QFont::DemiBold};
inline constexpr Style badge{11, 16, QFont::Medium};
inline constexpr Style age{11, 16, QFont::Normal};

/// The desktop's UI sans, or its fixed-width face without ligatures, at that size and weight. Cheap: made once each.
/// `text` is what is to be drawn: signs that several code points make up, a hand and its skin tone, are put together by
/// the same shaping that makes ligatures, so that a text with such signs has both.
[[nodiscard]] const QFont& font(const Style& style, QStringView text = {});

/// Width of `text` in logical pixels, as drawn on one line.
[[nodiscard]] qreal width(const Style& style, const QString& text);

/// Distance from the top of a line box to the baseline, on a half pixel.
[[nodiscard]] qreal baseline(const Style& style);

} // namespace Clipboard::Fonts
