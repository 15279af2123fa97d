#pragma once

#include "History/ClipType.h"

#include <QColor>

/// Every colour, size and duration of the interface, in one place. Sizes are logical pixels, durations milliseconds.
namespace Clipboard::Theme {

/// An opaque colour from its hexadecimal notation: rgb(0x16181D).
[[nodiscard]] constexpr QColor rgb(unsigned value, int alpha = 255)
{
    return {static_cast<int>(value >> 16U & 0xFFU), static_cast<int>(value >> 8U & 0xFFU),
            static_cast<int>(value & 0xFFU), alpha};
}

// Grounds.
inline constexpr QColor panel = rgb(0x16181D);
inline constexpr QColor pane = rgb(0x1A1D23);
inline constexpr QColor well = rgb(0x101216);
inline constexpr QColor raised = rgb(0x1C1F26);
inline constexpr QColor faint = rgb(0x1E2129);
inline constexpr QColor qrGround = rgb(0xF4F5F8);
// Lines.
inline constexpr QColor seam = rgb(0x292D35);
inline constexpr QColor outline = rgb(0x3A3F4A);
inline constexpr QColor pictureEdge = rgb(0xFFFFFF, 36);
inline constexpr QColor outerEdge = rgb(0x000000, 128);
inline constexpr QColor backdrop = rgb(0x000000, 102);
// Controls.
inline constexpr QColor control = rgb(0x252932);
inline constexpr QColor controlHover = rgb(0x2F343F);
inline constexpr QColor controlPress = rgb(0x1E2129);
inline constexpr QColor controlLine = rgb(0x343945);
inline constexpr QColor disabledLine = rgb(0x2A2E37);
inline constexpr QColor scroll = rgb(0x3D434F);
// Rows.
inline constexpr QColor rowHover = rgb(0x1E2127);
inline constexpr QColor rowSel = rgb(0x2C3252);
inline constexpr QColor rowSelLine = rgb(0x4C578C);
inline constexpr QColor rowIdle = rgb(0x272B34);
inline constexpr QColor kbdSel = rgb(0x3A4269);
inline constexpr QColor kbdSelLine = rgb(0x56629B);
// Texts.
inline constexpr QColor text = rgb(0xECEEF3);
inline constexpr QColor text2 = rgb(0xAAB1BF);
inline constexpr QColor text3 = rgb(0x8D95A5);
inline constexpr QColor textDisabled = rgb(0x565D6B);
// Accent and signs.
inline constexpr QColor accent = rgb(0x8FA0FF);
inline constexpr QColor accentHover = rgb(0xA4B2FF);
inline constexpr QColor accentPress = rgb(0x7B8CF0);
inline constexpr QColor onAccent = rgb(0x0F1220);
inline constexpr QColor accentSoft = rgb(0xC3CCFF);
inline constexpr QColor danger = rgb(0xFF7A72);
inline constexpr QColor dangerFill = rgb(0xCF3B42);
inline constexpr QColor dangerFillHover = rgb(0xBC343B);
inline constexpr QColor onDanger = rgb(0xFFFFFF);
inline constexpr QColor dangerCap = rgb(0xA92F36);
inline constexpr QColor dangerCapLine = rgb(0xDE6A70);
inline constexpr QColor success = rgb(0x4BD6A0);
inline constexpr QColor warning = rgb(0xF2B857);
// Tooltips.
inline constexpr QColor tip = rgb(0x2B303A);
inline constexpr QColor tipLine = rgb(0x444B59);
inline constexpr QColor tipCap = rgb(0x383E4A);
inline constexpr QColor tipCapLine = rgb(0x4C5361);
inline constexpr QColor tipCapText = rgb(0xC9CFDA);

/// A type's colour for dots, and as the fill of its tile when thinned to tileAlpha.
[[nodiscard]] QColor tint(ClipboardCore::ClipType type);
/// The same hue, light enough for text and icons.
[[nodiscard]] QColor readableTint(ClipboardCore::ClipType type);
/// The name of the type's drawing.
[[nodiscard]] QLatin1String typeIcon(ClipboardCore::ClipType type);
inline constexpr int tileAlpha = 0x2E;
inline constexpr qreal emptyChipDotOpacity = 0.45;
inline constexpr qreal goneOpacity = 0.45; // of the picture of a file that is no longer there

// Radii.
inline constexpr int panelRadius = 14;
inline constexpr int cardRadius = 12;
inline constexpr int menuRadius = 10;
inline constexpr int rowRadius = 8;
inline constexpr int buttonRadius = 7;
inline constexpr int thumbRadius = 6;
inline constexpr int keyCapRadius = 5;
inline constexpr qreal appIconRadius = 3.5;
inline constexpr int chipRadius = 13;

// Focus ring: its outer edge lies this far outside the control, with one pixel of ground between.
inline constexpr int ringOutset = 3;
inline constexpr int ringWidth = 2;

// Panel.
inline constexpr int panelWidth = 620;
inline constexpr int panelHeight = 540;
inline constexpr int searchHeight = 48;
inline constexpr int chipHeight = 26;
inline constexpr int headerHeight = 88;
inline constexpr int footerHeight = 36;
inline constexpr int listWidth = 240; // its right seam included
inline constexpr int margin = 16;
inline constexpr int listMargin = 8;
inline constexpr int rowWidth = 224;
inline constexpr int rowHeight = 44;
inline constexpr int thumbSize = 28;
inline constexpr int spacing = 6;
inline constexpr int buttonHeight = 28;
inline constexpr int buttonBarHeight = 44;
inline constexpr int keyCapHeight = 18;

// Durations; all curves are out-cubic, and all are zero when motion is reduced (Motion.h).
inline constexpr int panelInDuration = 120;
inline constexpr int panelRise = 4;
inline constexpr int sheetDuration = 140;
inline constexpr int toastInDuration = 140;
inline constexpr int toastOutDuration = 180;
inline constexpr int scrollDuration = 120;
inline constexpr int tooltipDelay = 500;

/// Gives the whole program a built-in style and a dark palette, so that no desktop palette shows through. Call once,
/// before the first widget.
void install();

} // namespace Clipboard::Theme
