#pragma once

#include "DesktopEntries.h"
#include "XdgWorkspace.h"

#include <QDateTime>
#include <QList>

#include <future>
#include <memory>

namespace Clipboard {

/// The installed applications by their desktop entries, with names and icons. Which one is in front a desktop says.
class EntryWorkspace : public XdgWorkspace
{
public:
    ~EntryWorkspace() override;

    [[nodiscard]] QIcon applicationIcon(const QString& bundleID) const final;
    [[nodiscard]] QIcon fileIcon(const QString& path) const final;

protected:
    EntryWorkspace();

    [[nodiscard]] Application applicationOf(const DesktopEntries::Traits& traits) const;
    /// True until the entries have been read for the first time.
    [[nodiscard]] bool isReadingFirstEntries() const { return m_entries->isEmpty() && m_reading.valid(); }
    void readEntriesAgainIfChanged();
    /// The entries have been read, for the first time or again.
    virtual void entriesRead() {}
    /// For an application without an icon of its own; may be null.
    [[nodiscard]] virtual QIcon iconOfWindow(const QString& /*bundleID*/) const { return {}; }

private:
    using EntriesPointer = std::shared_ptr<const DesktopEntries>;

    void readEntries();
    void takeEntries();
    [[nodiscard]] const DesktopEntries& entries() const;

    mutable EntriesPointer m_entries;
    mutable std::future<EntriesPointer> m_reading; // valid while a newer reading is under way
    QList<QDateTime> m_foldersChanged;
};

} // namespace Clipboard
