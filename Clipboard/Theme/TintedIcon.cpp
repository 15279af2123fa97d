#include "TintedIcon.h"

#include <QBuffer>
#include <QCache>
#include <QFile>
#include <QImageReader>
#include <QPaintDevice>
#include <QPainter>

using namespace Qt::StringLiterals;

// Outside of any namespace, as the macro demands; a static library's resources are not registered on their own.
static void registerIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace Clipboard {

namespace {

// The panel with every state of its controls needs about 60; each is a few kilobytes.
constexpr int cachedIcons = 160;

QString cacheKey(const TintedIcon& icon, int devicePixels)
{
    return u"%1 %2 %3 %4 %5"_s.arg(icon.name)
        .arg(devicePixels)
        .arg(icon.color.rgba())
        .arg(icon.stroke)
        .arg(icon.ground.rgba());
}

QPixmap render(const TintedIcon& icon, int devicePixels)
{
    static const bool registered = (registerIcons(), true);
    Q_UNUSED(registered)
    QFile file(u":/icons/%1.svg"_s.arg(icon.name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    svg.replace("currentColor", icon.color.name(QColor::HexRgb).toLatin1());
    svg.replace("#16181D", icon.ground.name(QColor::HexRgb).toLatin1());
    svg.replace("stroke-width=\"1.75\"", "stroke-width=\"" + QByteArray::number(icon.stroke) + '"');
    QBuffer buffer(&svg);
    QImageReader reader(&buffer, "svg");
    reader.setAutoDetectImageFormat(false); // no other format's library is loaded to be asked
    reader.setScaledSize({devicePixels, devicePixels});
    return QPixmap::fromImage(reader.read());
}

} // namespace

QPixmap tintedPixmap(const TintedIcon& icon, qreal devicePixelRatio)
{
    static QCache<QString, QPixmap> cache(cachedIcons);
    const int devicePixels = qRound(icon.size * devicePixelRatio);
    const QString key = cacheKey(icon, devicePixels);
    if (const QPixmap* cached = cache.object(key))
        return *cached;
    QPixmap pixmap = render(icon, devicePixels);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    cache.insert(key, new QPixmap(pixmap)); // the cache owns it
    return pixmap;
}

void drawIcon(QPainter& painter, const QRectF& rect, const TintedIcon& icon)
{
    const qreal ratio = painter.device()->devicePixelRatio();
    const QPointF topLeft(rect.x() + (rect.width() - icon.size) / 2, rect.y() + (rect.height() - icon.size) / 2);
    painter.drawPixmap(topLeft, tintedPixmap(icon, ratio));
}

} // namespace Clipboard
