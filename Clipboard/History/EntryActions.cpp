#include "EntryActions.h"

#include "OffMainThread.h"

#include <QPointer>

#include <utility>

namespace Clipboard {

using ClipboardCore::ClipItem;
using ClipboardCore::SmartAction;
using ClipboardCore::SmartActionResult;

namespace {

// The actions of a shorter content are found in a fraction of a millisecond, and stand in the entry's first frame.
constexpr qsizetype foundAtOnceBytes = qsizetype{16} * 1024;

} // namespace

EntryActions::EntryActions(Catalogue catalogue)
    : m_catalogue(std::move(catalogue))
{
    m_finding.setMaxThreadCount(1);
    m_running.setMaxThreadCount(1);
}

EntryActions::~EntryActions()
{
    m_finding.clear();
    m_finding.waitForDone();
    m_running.clear();
    m_running.waitForDone();
}

QList<SmartAction> EntryActions::of(const ClipItem& item)
{
    if (m_latest.entry == item.id)
        return m_latest.actions;
    m_finding.clear(); // nobody looks at those entries any more
    if (item.content.byteCount() <= foundAtOnceBytes) {
        m_latest = {item.id, m_catalogue(item), true};
        return m_latest.actions;
    }
    m_latest = {item.id, {}, false};
    const auto find = [catalogue = m_catalogue, item] { return catalogue(item); };
    runOffMainThread(m_finding, this, find, [this, entry = item.id](const QList<SmartAction>& actions) {
        if (m_latest.entry != entry)
            return;
        m_latest = {entry, actions, true};
        emit found();
    });
    return {};
}

void EntryActions::run(const SmartAction& action, const QUuid& entry, Done done)
{
    auto deliver = [done = std::move(done), underWay = begin({entry, action.label})](
                       const SmartActionResult& result) mutable { done(result, std::move(underWay)); };
    runOffMainThread(m_running, this, action.run, std::move(deliver));
}

ActionUnderWay EntryActions::begin(const Key& key)
{
    m_underWay.append(key);
    emit underWayChanged();
    // The token is made of nothing but its end.
    return {static_cast<const void*>(this), [guard = QPointer(this), key](const void*) {
                if (guard && guard->m_underWay.removeOne(key))
                    emit guard->underWayChanged();
            }};
}

bool EntryActions::isUnderWay(const QUuid& entry, const QString& label) const
{
    return m_underWay.contains(Key{entry, label});
}

} // namespace Clipboard
