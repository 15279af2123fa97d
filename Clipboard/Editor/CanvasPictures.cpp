#include "CanvasPictures.h"

#include "Annotation/Pixelation.h"
#include "OffMainThread.h"
#include "QtGraphics.h"

namespace Clipboard {

CanvasPictures::CanvasPictures(QObject* parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
}

CanvasPictures::~CanvasPictures() = default; // the pool waits for its work

void CanvasPictures::setPicture(const std::shared_ptr<const ClipboardCore::Picture>& picture, int blockSize)
{
    m_picture = picture;
    m_pixelated.reset();
    m_scaled = {};
    const auto pixelate = [picture, blockSize] { return ClipboardCore::pixelated(*picture, blockSize); };
    runOffMainThread(m_pool, this, pixelate, [this, picture](const auto& pixelated) {
        if (picture != m_picture)
            return;
        m_pixelated = pixelated;
        emit changed();
    });
}

const QImage& CanvasPictures::scaled(QSize size)
{
    const QImage& whole = QtPicture::imageOf(*m_picture);
    if (size.width() >= whole.width())
        return whole;
    if (m_scaled.size() != size && !m_isScaling)
        scaleTo(size);
    return m_scaled.isNull() ? whole : m_scaled;
}

void CanvasPictures::scaleTo(QSize size)
{
    m_isScaling = true;
    const auto scale = [picture = m_picture, size] {
        const QImage& whole = QtPicture::imageOf(*picture);
        return withoutNeedlessAlpha(whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    };
    runOffMainThread(m_pool, this, scale, [this, picture = m_picture](const QImage& scaled) {
        m_isScaling = false;
        if (picture == m_picture)
            m_scaled = scaled;
        emit changed(); // the canvas asks again, maybe for another size
    });
}

} // namespace Clipboard
