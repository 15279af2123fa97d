#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

namespace Clipboard {

/// Downsampled pictures, decoded off the main thread and kept in a bounded cache of the least recently used. Main
/// thread only.
class Thumbs final : public QObject
{
    Q_OBJECT
public:
    enum class Phase { loaded, loading, unavailable };
    struct Thumb
    {
        Phase phase = Phase::loading;
        QImage image; // null unless loaded; its device pixel ratio is 1
    };

    explicit Thumbs(QObject* parent = nullptr);
    ~Thumbs() override;
    Q_DISABLE_COPY_MOVE(Thumbs)

    /// The picture of `path` with its larger side at most `maxPixel` pixels, upright. When it is not at hand it is
    /// loaded, and finished() follows. A picture smaller than that is not enlarged.
    [[nodiscard]] Thumb thumb(const QString& path, int maxPixel);
    /// Lets pictures that could not be loaded be tried again: call it when the panel is shown.
    void forgetFailures();

signals:
    /// thumb() has an answer for this path and size now.
    void finished(const QString& path, int maxPixel);

private:
    void load(const QString& path, int maxPixel, const QString& key);

    QCache<QString, QImage> m_cache;
    QSet<QString> m_loading;
    QSet<QString> m_failed;
    QThreadPool m_pool;
};

} // namespace Clipboard
