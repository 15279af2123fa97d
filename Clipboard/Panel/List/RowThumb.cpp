#include "RowThumb.h"

#include "Actions/ColorMath.h"
#include "FileKinds.h"
#include "Painting.h"
#include "Theme.h"
#include "Thumbs.h"
#include "TintedIcon.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

constexpr int iconSize = 16;
// A picture is cropped to the square, so its shorter side has to fill it: for all but panoramas twice the square does.
constexpr int cropReserve = 2;

void paintTile(QPainter& painter, const QRectF& square, ClipType type, QLatin1String sign)
{
    QColor fill = Theme::tint(type);
    fill.setAlpha(Theme::tileAlpha);
    Painting::roundedFill(painter, square, Theme::thumbRadius, fill);
    drawIcon(painter, square, {sign, iconSize, Theme::readableTint(type)});
}

void paintPicture(QPainter& painter, const QRectF& square, const QImage& image)
{
    QSizeF source = square.size().scaled(image.size(), Qt::KeepAspectRatio);
    QRectF crop(QPointF(), source);
    crop.moveCenter(QRectF(image.rect()).center());
    QPainterPath rounded;
    rounded.addRoundedRect(square, Theme::thumbRadius, Theme::thumbRadius);
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setClipPath(rounded);
    painter.drawImage(square, image, crop);
    painter.restore();
    Painting::innerLine(painter, square, Theme::thumbRadius, Theme::pictureEdge);
}

} // namespace

void paintRowThumb(QPainter& painter, const QRectF& square, const ClipItem& item, Thumbs& thumbs, FileKinds& files)
{
    if (item.type == ClipType::color) {
        if (const auto color = ClipboardCore::ColorMath::colorOf(item.content)) {
            const QColor fill(color->r, color->g, color->b);
            return Painting::roundedFill(painter, square, Theme::thumbRadius, fill, Theme::pictureEdge);
        }
    } else if (item.type == ClipType::image) {
        const qreal ratio = std::max<qreal>(1, painter.device()->devicePixelRatio());
        const int pixels = qRound(square.width() * ratio) * cropReserve;
        const Thumbs::Thumb thumb = thumbs.thumb(item.content.toString(), pixels);
        if (thumb.phase == Thumbs::Phase::loaded)
            return paintPicture(painter, square, thumb.image);
    }
    const bool isFolder = item.type == ClipType::file && files.kind(item.content.toString()) == FileKinds::Kind::folder;
    paintTile(painter, square, item.type, isFolder ? QLatin1String("folder") : Theme::typeIcon(item.type));
}

} // namespace Clipboard
