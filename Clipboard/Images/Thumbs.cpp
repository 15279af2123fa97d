#include "Thumbs.h"

#include "OffMainThread.h"
#include "PictureReading.h"

namespace Clipboard {

namespace {

// A screenful of row thumbnails and a few previews.
constexpr qsizetype cacheBytes = qsizetype{24} * 1024 * 1024;

QString cacheKey(const QString& path, int maxPixel)
{
    return path + u'@' + QString::number(maxPixel);
}

} // namespace

Thumbs::Thumbs(QObject* parent)
    : QObject(parent)
    , m_cache(cacheBytes)
{
    // A full decode of a large picture takes tens of megabytes: one at a time.
    m_pool.setMaxThreadCount(1);
}

Thumbs::~Thumbs()
{
    m_pool.clear();
    m_pool.waitForDone();
}

Thumbs::Thumb Thumbs::thumb(const QString& path, int maxPixel)
{
    const QString key = cacheKey(path, maxPixel);
    if (const QImage* image = m_cache.object(key))
        return {Phase::loaded, *image};
    if (m_failed.contains(key))
        return {Phase::unavailable, {}};
    if (!m_loading.contains(key))
        load(path, maxPixel, key);
    return {Phase::loading, {}};
}

void Thumbs::forgetFailures()
{
    m_failed.clear();
}

void Thumbs::load(const QString& path, int maxPixel, const QString& key)
{
    m_loading.insert(key);
    const auto read = [path, maxPixel] { return PictureReading::readFile(path, maxPixel); };
    runOffMainThread(m_pool, this, read, [this, path, maxPixel, key](const QImage& image) {
        m_loading.remove(key);
        if (image.isNull() || !m_cache.insert(key, std::make_unique<QImage>(image).release(), image.sizeInBytes()))
            m_failed.insert(key);
        emit finished(path, maxPixel);
    });
}

} // namespace Clipboard
