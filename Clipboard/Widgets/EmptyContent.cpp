#include "EmptyContent.h"

#include "Painting.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QRectF>

namespace Clipboard {

namespace {

constexpr int tileSize = 72;
constexpr int tileRadius = 20;
constexpr int iconSize = 32;
constexpr int belowTile = 20;
constexpr int belowTitle = 4;
constexpr int aboveMiddle = 12;

} // namespace

void EmptyContent::paint(QPainter& painter, const QRectF& area) const
{
    const int titleLine = Fonts::heading.lineHeight;
    const int messageLine = message.isEmpty() ? 0 : belowTitle + Fonts::body.lineHeight;
    const int height = tileSize + belowTile + titleLine + messageLine;
    const qreal top = qRound(area.center().y() - height / 2.0 - aboveMiddle);

    const QRectF tile(qRound(area.center().x() - tileSize / 2.0), top, tileSize, tileSize);
    Painting::roundedFill(painter, tile, tileRadius, Theme::faint, Theme::seam);
    drawIcon(painter, tile, {icon, iconSize, Theme::text3});

    const qreal textLeft = area.left() + Theme::margin;
    const qreal textWidth = area.width() - 2 * Theme::margin;
    const QRectF titleBox(textLeft, tile.bottom() + belowTile, textWidth, titleLine);
    Painting::textLine(painter, titleBox, Fonts::heading, Theme::text, title, Qt::AlignHCenter);
    const QRectF messageBox(textLeft, titleBox.bottom() + belowTitle, textWidth, Fonts::body.lineHeight);
    if (!message.isEmpty())
        Painting::textLine(painter, messageBox, Fonts::body, Theme::text2, message, Qt::AlignHCenter);
}

} // namespace Clipboard
