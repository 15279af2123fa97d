#include "ServiceNotices.h"

#include <algorithm>

namespace Clipboard {

void ServiceNotices::raise(const QString& id, const QString& text)
{
    put({id, text, false});
}

void ServiceNotices::tell(const QString& id, const QString& text)
{
    put({id, text, true});
}

void ServiceNotices::put(const Notice& notice)
{
    const auto known = std::ranges::find(m_notices, notice.id, &Notice::id);
    if (known != m_notices.end() && *known == notice)
        return;
    if (known != m_notices.end())
        *known = notice;
    else
        m_notices.append(notice);
    emit changed();
}

void ServiceNotices::clear(const QString& id)
{
    if (m_notices.removeIf([&id](const Notice& notice) { return notice.id == id; }) > 0)
        emit changed();
}

QStringList ServiceNotices::texts() const
{
    QStringList texts;
    for (const Notice& notice : m_notices)
        texts.append(notice.text);
    return texts;
}

QString ServiceNotices::textOf(const QString& id) const
{
    const auto known = std::ranges::find(m_notices, id, &Notice::id);
    return known == m_notices.cend() ? QString() : known->text;
}

QString ServiceNotices::text() const
{
    const qsizetype position = shown();
    return position < 0 ? QString() : m_notices.at(position).text;
}

void ServiceNotices::markSeen()
{
    const qsizetype position = shown();
    if (position < 0 || !m_notices.at(position).isSaidOnce)
        return;
    m_notices.removeAt(position);
    emit changed();
}

qsizetype ServiceNotices::shown() const
{
    const auto once = std::ranges::find(m_notices, true, &Notice::isSaidOnce);
    return once != m_notices.cend() ? once - m_notices.cbegin() : m_notices.size() - 1;
}

} // namespace Clipboard
