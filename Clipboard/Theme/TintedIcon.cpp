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

/// What an icon's pixels depend on. Each frame asks for some forty: a number compares sooner than a text is written.
struct Key
{
    QByteArray name;
    int devicePixels;
    QRgb color;
    qreal stroke;
    QRgb ground;

    bool operator==(const Key&) const = default;
};

size_t qHash(const Key& key, size_t seed)
{
    return qHashMulti(seed, key.name, key.devicePixels, key.color, key.stroke, key.ground);
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
    static QCache<Key, QPixmap> cache(cachedIcons);
    const int devicePixels = qRound(icon.size * devicePixelRatio);
    Key key{QByteArray::fromRawData(icon.name.data(), icon.name.size()), devicePixels, icon.color.rgba(), icon.stroke,
            icon.ground.rgba()};
    if (const QPixmap* cached = cache.object(key))
        return *cached;
    QPixmap pixmap = render(icon, devicePixels);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    key.name.detach();                      // not every name outlives its entry
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
