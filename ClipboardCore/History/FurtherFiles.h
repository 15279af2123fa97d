#pragma once

#include "History/ClipItem.h"
#include "Support/RegularFile.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <optional>

namespace ClipboardCore {

class ContentSeal;

/// How many more files were copied along with those of the history's entries, in a file of its own beside the history
/// (docs/history-format.md), whose entries have no place for it.
class FurtherFiles final
{
public:
    explicit FurtherFiles(QString path);

    [[nodiscard]] bool isSealedOnDisk() const;
    /// Gives the entries the numbers that are there. Of a file that cannot be read, or is sealed and `seal` null: none.
    void load(const ContentSeal* seal, QList<ClipItem>& items);
    /// Writes the numbers of these entries, unless they stand there already, sealed unless `seal` is null. What fails
    /// is tried again by the next call: until then the entries, which are worth more, are saved without.
    void save(const QList<ClipItem>& items, const ContentSeal* seal);
    /// False while the file stands in the other form.
    [[nodiscard]] bool isAsWanted(bool isSealingWanted) const;

    /// A number that was read, which may be anything; 0 for one that cannot be.
    [[nodiscard]] static int numberFrom(double value);

private:
    using Numbers = QMap<QUuid, int>; // of the entries that have any

    [[nodiscard]] std::optional<QByteArray> read() const;
    [[nodiscard]] static std::optional<Numbers> decode(QByteArray json);
    [[nodiscard]] static QByteArray encode(const Numbers& numbers);
    [[nodiscard]] bool write(const Numbers& numbers, const ContentSeal* seal) const;

    const QString m_path;
    std::optional<Numbers> m_numbers = Numbers(); // what stands there; nothing when that is not known
    RegularFile::Trace m_trace;                   // of that file
    bool m_isSealed = false;
};

} // namespace ClipboardCore
