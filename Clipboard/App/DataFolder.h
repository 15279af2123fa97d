#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace Clipboard {

/// The folder of the history while the program runs. One that is removed or moved away is there again at once, so that
/// whoever looks for it finds this process. Main thread only.
class DataFolder final : public QObject
{
    Q_OBJECT
public:
    /// Follows what becomes of a folder that exists.
    explicit DataFolder(QString path, QObject* parent = nullptr);

signals:
    /// Something happened beside it, and it may be another one now.
    void mayBeAnother();

private:
    void look();

    QString m_path;
    QFileSystemWatcher m_watcher; // of the folder that it is in: nothing happens there, mostly
};

} // namespace Clipboard
