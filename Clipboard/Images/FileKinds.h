#pragma once

#include <QCache>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

namespace Clipboard {

/// What is at the paths that entries hold as their content, looked up off the main thread: a disk may sleep, and a
/// server may be gone. Main thread only.
class FileKinds final : public QObject
{
    Q_OBJECT
public:
    enum class Kind { unknown, gone, file, folder };

    explicit FileKinds(QObject* parent = nullptr);
    ~FileKinds() override;
    Q_DISABLE_COPY_MOVE(FileKinds)

    /// What was there when it was last looked at; `unknown` before that, and found() follows.
    [[nodiscard]] Kind kind(const QString& path);
    /// Has everything looked at again when it is next asked for: call it when the panel is shown. What was known until
    /// then is answered meanwhile.
    void refresh() { ++m_round; }

signals:
    /// kind() has another answer for this path than before.
    void found(const QString& path);

private:
    struct Known
    {
        Kind kind = Kind::unknown;
        int round = 0;
    };
    void look(const QString& path);

    QCache<QString, Known> m_known;
    QSet<QString> m_looking;
    int m_round = 0;
    QThreadPool m_pool;
};

} // namespace Clipboard
