#include "Thumbs.h"

#include "OffMainThread.h"
#include "PictureReading.h"
#include "ThumbFiles.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Clipboard {

namespace {

// A screenful of row thumbnails and a few previews.
constexpr qsizetype cacheBytes = qsizetype{24} * 1024 * 1024;
// The pictures of a screenful of rows, of the preview and of the last few that were scrolled past.
constexpr qsizetype maxWaiting = 16;

QString cacheKey(const QString& path, int maxPixel)
{
    return path + u'@' + QString::number(maxPixel);
}

/// The picture at each of the sizes, the largest first, from one decode.
QList<QImage> readSizes(const QString& path, const QList<int>& sizes)
{
    const QImage largest = ThumbFiles::read(path, sizes.first());
    QList<QImage> images;
    for (const int size : sizes)
        images.append(PictureReading::scaledDown(largest, size));
    return images;
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
    request(path, maxPixel);
    return {Phase::loading, {}};
}

void Thumbs::forgetFailures()
{
    m_failed.clear();
}

void Thumbs::prepare(const QString& path)
{
    m_unprepared.append(path);
    workOn();
}

void Thumbs::request(const QString& path, int maxPixel)
{
    if (m_current && m_current->path == path && m_current->sizes.contains(maxPixel))
        return;
    Request request{path, {}};
    const auto known = std::ranges::find(m_waiting, path, &Request::path);
    if (known != m_waiting.end()) {
        request.sizes = known->sizes;
        m_waiting.erase(known);
    }
    if (!request.sizes.contains(maxPixel))
        request.sizes.insert(std::ranges::lower_bound(request.sizes, maxPixel, std::greater()), maxPixel);
    m_waiting.append(request);
    if (m_waiting.size() > maxWaiting)
        m_waiting.removeFirst();
    workOn();
}

/// The largest is what the user looks at, in the preview; among equals it is the one asked for last.
Thumbs::Request Thumbs::takeMostWanted()
{
    const auto largest = [](const Request& request) { return request.sizes.first(); };
    const auto found = std::ranges::max_element(m_waiting.rbegin(), m_waiting.rend(), {}, largest);
    return m_waiting.takeAt(std::distance(found, m_waiting.rend()) - 1);
}

void Thumbs::workOn()
{
    if (m_current)
        return;
    if (!m_waiting.isEmpty())
        return load(takeMostWanted());
    if (m_unprepared.isEmpty())
        return;
    load({m_unprepared.takeFirst(), {}});
}

void Thumbs::load(const Request& request)
{
    m_current = request;
    const auto read = [request] {
        if (!request.sizes.isEmpty())
            return readSizes(request.path, request.sizes);
        ThumbFiles::make(request.path);
        return QList<QImage>();
    };
    runOffMainThread(m_pool, this, read, [this, request](const QList<QImage>& images) { keep(request, images); });
}

void Thumbs::keep(const Request& request, const QList<QImage>& images)
{
    for (qsizetype i = 0; i < images.size(); ++i) {
        const QImage& image = images.at(i);
        const QString key = cacheKey(request.path, request.sizes.at(i));
        if (image.isNull() || !m_cache.insert(key, std::make_unique<QImage>(image).release(), image.sizeInBytes()))
            m_failed.insert(key);
    }
    m_current.reset();
    workOn();
    for (const int size : request.sizes)
        emit finished(request.path, size);
}

} // namespace Clipboard
