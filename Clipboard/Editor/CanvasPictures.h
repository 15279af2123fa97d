#pragma once

#include "Annotation/Picture.h"

#include <QImage>
#include <QObject>
#include <QThreadPool>

#include <memory>

namespace Clipboard {

/// What the canvas draws of a picture again and again, made once and off the main thread: the picture scaled down to
/// the size in which it is seen, and its pixelated copy. Main thread only.
class CanvasPictures final : public QObject
{
    Q_OBJECT
public:
    explicit CanvasPictures(QObject* parent);
    ~CanvasPictures() override;

    /// Forgets what was made of another picture. The pixelated copy is begun at once.
    void setPicture(const std::shared_ptr<const ClipboardCore::Picture>& picture, int blockSize);

    /// Null as long as it is not ready.
    [[nodiscard]] const std::shared_ptr<const ClipboardCore::Picture>& pixelated() const { return m_pixelated; }
    /// The picture scaled down to `size` in device pixels. As long as that is not ready, one of another size or the
    /// picture itself.
    [[nodiscard]] const QImage& scaled(QSize size);

signals:
    /// Something that was asked for is ready.
    void changed();

private:
    void scaleTo(QSize size);

    std::shared_ptr<const ClipboardCore::Picture> m_picture;
    std::shared_ptr<const ClipboardCore::Picture> m_pixelated;
    QImage m_scaled;
    bool m_isScaling = false;
    QThreadPool m_pool;
};

} // namespace Clipboard
