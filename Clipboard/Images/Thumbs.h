#pragma once

#include <QCache>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <optional>

namespace Clipboard {

/// Downsampled pictures, read off the main thread and kept in a bounded cache of the least recently used. What is asked
/// for last is read first, one picture at a time and for all the sizes that are waited for. Main thread only.
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
    /// loaded, and finished() follows, unless so much else was asked for since that nobody can be looking at it: ask
    /// again while it is on the screen. A picture smaller than that is not enlarged.
    [[nodiscard]] Thumb thumb(const QString& path, int maxPixel);
    /// Has the small copy of a picture that was just stored made when nothing else is to be done.
    void prepare(const QString& path);
    /// Lets pictures that could not be loaded be tried again: call it when the panel is shown.
    void forgetFailures();

signals:
    /// thumb() has an answer for this path and size now.
    void finished(const QString& path, int maxPixel);

private:
    struct Request
    {
        QString path;
        QList<int> sizes; // the largest first
    };
    void request(const QString& path, int maxPixel);
    [[nodiscard]] Request takeMostWanted();
    void workOn();
    void load(const Request& request);
    void keep(const Request& request, const QList<QImage>& images);

    QCache<QString, QImage> m_cache;
    QSet<QString> m_failed;
    QList<Request> m_waiting; // the last one asked for last
    QStringList m_unprepared;
    std::optional<Request> m_current;
    QThreadPool m_pool;
};

} // namespace Clipboard
