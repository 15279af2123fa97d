#include "EmptyContent.h"

#include "Painting.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QPainter>
#include <QRectF>

#include <algorithm>

namespace Clipboard {

namespace {

constexpr int tileSize = 72;
constexpr int tileRadius = 20;
constexpr int iconSize = 32;
constexpr int belowTile = 20;
constexpr int belowTitle = 4;
constexpr int aboveMiddle = 12;

constexpr int aboveMore = 16;
constexpr qreal moreWidth = 560;
constexpr int wrappedAndCentred = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;

/// The room of the paragraphs, with what is above them.
QRectF moreBox(QPainter& painter, const QRectF& area, const QString& more)
{
    if (more.isEmpty())
        return {};
    painter.setFont(Fonts::font(Fonts::body));
    const qreal width = std::min(moreWidth, area.width());
    const QRectF room(area.center().x() - width / 2, 0, width, area.height());
    const QRectF text = painter.boundingRect(room, wrappedAndCentred, more);
    return {room.x(), 0, width, text.height() + aboveMore};
}

} // namespace

void EmptyContent::paint(QPainter& painter, const QRectF& area) const
{
    const int titleLine = Fonts::heading.lineHeight;
    const int messageLine = message.isEmpty() ? 0 : belowTitle + Fonts::body.lineHeight;
    const QRectF moreArea = moreBox(painter, area, more);
    const qreal height = tileSize + belowTile + titleLine + messageLine + moreArea.height();
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
    if (more.isEmpty())
        return;
    painter.setFont(Fonts::font(Fonts::body));
    painter.setPen(Theme::text2);
    painter.drawText(moreArea.translated(0, messageBox.bottom() - moreArea.top()).adjusted(0, aboveMore, 0, 0),
                     wrappedAndCentred, more);
}

} // namespace Clipboard
