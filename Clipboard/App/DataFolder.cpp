#include "DataFolder.h"

#include "Support/PrivateFolder.h"

#include <QFileInfo>

#include <utility>

namespace Clipboard {

DataFolder::DataFolder(QString path, QObject* parent)
    : QObject(parent)
    , m_path(std::move(path))
{
    m_watcher.addPath(QFileInfo(m_path).path());
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DataFolder::look);
}

void DataFolder::look()
{
    ClipboardCore::createPrivateFolder(m_path);
    if (m_watcher.directories().isEmpty()) // the one around it had gone, too
        m_watcher.addPath(QFileInfo(m_path).path());
    emit mayBeAnother();
}

} // namespace Clipboard
