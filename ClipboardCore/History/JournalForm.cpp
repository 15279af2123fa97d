#include "History/JournalForm.h"

#include "History/HistoryCoding.h"

#include <QUuid>

#include <utility>

namespace ClipboardCore {

JournalForm::JournalForm(std::shared_ptr<const ContentSeal> seal)
    : m_seal(std::move(seal))
    , m_isSealed(m_seal != nullptr)
{
    if (m_isSealed)
        m_header = sealedBeginning.toByteArray() + "1 " + QUuid::createUuid().toRfc4122().toBase64() + '\n';
}

JournalForm JournalForm::of(QByteArrayView content, std::shared_ptr<const ContentSeal> seal)
{
    JournalForm found;
    if (!ClipboardCore::isSealed(content))
        return found;
    found.m_seal = std::move(seal);
    found.m_isSealed = true;
    found.m_header = content.first(content.indexOf('\n') + 1).toByteArray(); // empty for a torn one, without lines
    return found;
}

QByteArray JournalForm::context(qint64 offset) const
{
    return m_header + QByteArray::number(offset);
}

QByteArray JournalForm::written(QByteArrayView line, qint64 offset) const
{
    return m_seal->sealRecord(line.chopped(1), context(offset)).toBase64() + '\n';
}

std::optional<QByteArray> JournalForm::read(QByteArrayView line, qint64 offset) const
{
    const auto sealed = QByteArray::fromBase64Encoding(line.toByteArray(), QByteArray::AbortOnBase64DecodingErrors);
    // Its last letter has bits that mean nothing (RFC 4648, 3.5): a line that differs in those was changed, too.
    const bool isAsWritten = sealed && (*sealed).toBase64() == line;
    std::optional<QByteArray> plain = isAsWritten ? m_seal->openRecord(*sealed, context(offset)) : std::nullopt;
    if (plain)
        plain->reserve(plain->size() + HistoryCoding::decodePadding);
    return plain;
}

} // namespace ClipboardCore
