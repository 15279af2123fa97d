#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Clipboard::Benchmarks {

/// An entry that is hard to show.
struct HardEntry
{
    QString name; // what makes it hard
    QString type;
    QString content;
};

/// One of each kind that has ever held up a frame somewhere: scripts, lines, sizes.
[[nodiscard]] QList<HardEntry> hardEntries();

/// A history file of them, the first the newest.
[[nodiscard]] QByteArray historyOf(const QList<HardEntry>& entries);

} // namespace Clipboard::Benchmarks
