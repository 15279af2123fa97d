#pragma once

#include "Sealing/ContentSeal.h"

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <optional>

namespace ClipboardCore {

/// How a journal's lines stand in its file (docs/history-format.md): as they are, or each sealed by itself, bound to
/// its journal and its place in it, so that none can be moved, repeated, or left out from between others.
class JournalForm final
{
public:
    /// That of plain lines.
    JournalForm() = default;
    /// That of a new journal, whose lines `seal` seals; plain for null.
    explicit JournalForm(std::shared_ptr<const ContentSeal> seal);
    /// That of a journal with this content, which `seal` opens.
    [[nodiscard]] static JournalForm of(QByteArrayView content, std::shared_ptr<const ContentSeal> seal);

    [[nodiscard]] bool isSealed() const { return m_isSealed; }
    /// What the file begins with, with its line feed; nothing when lines are plain.
    [[nodiscard]] const QByteArray& header() const { return m_header; }
    /// A line with its line feed as it stands, sealed, in the file at that offset.
    [[nodiscard]] QByteArray written(QByteArrayView line, qint64 offset) const;
    /// The reverse, both without the line feed. HistoryCoding::decodePadding bytes behind the result can be read.
    /// Nothing when it was changed.
    [[nodiscard]] std::optional<QByteArray> read(QByteArrayView line, qint64 offset) const;

private:
    [[nodiscard]] QByteArray context(qint64 offset) const;

    std::shared_ptr<const ContentSeal> m_seal;
    bool m_isSealed = false;
    QByteArray m_header;
};

} // namespace ClipboardCore
