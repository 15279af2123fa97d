#include "EntryWorkspace.h"

#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QStandardPaths>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

QStringList applicationFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

QList<QDateTime> changeTimes(const QStringList& folders)
{
    QList<QDateTime> times;
    for (const QString& folder : folders)
        times.append(QFileInfo(folder).lastModified());
    return times;
}

std::optional<QString> optionalText(const QString& text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

EntryWorkspace::EntryWorkspace()
    : m_entries(std::make_shared<DesktopEntries>())
{
    readEntries();
}

EntryWorkspace::~EntryWorkspace() = default;

Workspace::Application EntryWorkspace::applicationOf(const DesktopEntries::Traits& traits) const
{
    if (const auto* entry = entries().find(traits))
        return {optionalText(entry->name), entry->id};
    const QString& name = traits.windowClass.isEmpty() ? traits.windowInstance : traits.windowClass;
    return {optionalText(name), optionalText(name)};
}

QIcon EntryWorkspace::applicationIcon(const QString& bundleID) const
{
    const auto* entry = entries().find(bundleID);
    const QString name = entry == nullptr ? QString() : entry->icon;
    QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    return icon.isNull() ? iconOfWindow(bundleID) : icon;
}

QIcon EntryWorkspace::fileIcon(const QString& path) const
{
    // Without icons for types there is no need to learn the types.
    QIcon plain = QIcon::fromTheme(u"text-x-generic"_s);
    if (plain.isNull())
        return {};
    if (path.endsWith(u'/')) {
        QIcon folder = QIcon::fromTheme(u"folder"_s);
        return folder.isNull() ? QIcon::fromTheme(u"inode-directory"_s) : folder;
    }
    const auto types = QMimeDatabase().mimeTypesForFileName(path.section(u'/', -1));
    if (types.isEmpty())
        return plain;
    QIcon icon = QIcon::fromTheme(types.first().iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(types.first().genericIconName());
    return icon.isNull() ? plain : icon;
}

/// A few hundred small files, perhaps from a cold disk: read on another thread. The future waits for it when this
/// object goes.
void EntryWorkspace::readEntries()
{
    const QStringList folders = applicationFolders();
    m_foldersChanged = changeTimes(folders);
    m_reading = std::async(std::launch::async, [this, folders, language = QLocale().name()]() -> EntriesPointer {
        auto entries = std::make_shared<DesktopEntries>(folders, language);
        QMetaObject::invokeMethod(this, &EntryWorkspace::takeEntries, Qt::QueuedConnection);
        return entries;
    });
}

void EntryWorkspace::takeEntries()
{
    if (m_reading.valid())
        m_entries = m_reading.get();
    entriesRead();
}

/// Programs are installed rarely, and the next one to come to the front may be new.
void EntryWorkspace::readEntriesAgainIfChanged()
{
    if (!m_reading.valid() && changeTimes(applicationFolders()) != m_foldersChanged)
        readEntries();
}

const DesktopEntries& EntryWorkspace::entries() const
{
    // Only a copy within milliseconds of the start has to wait; later ones take what is there.
    if (m_entries->isEmpty() && m_reading.valid())
        m_entries = m_reading.get();
    return *m_entries;
}

} // namespace Clipboard
