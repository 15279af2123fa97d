#include "Preferences.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

Preferences::Preferences(LoginItem loginItem, QObject* parent)
    : QObject(parent)
    , m_loginItem(std::move(loginItem))
{
    m_reread.setSingleShot(true);
    connect(&m_reread, &QTimer::timeout, this, &Preferences::reread);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] { m_reread.start(0); });
    read();
}

void Preferences::follow()
{
    m_loginItem.adoptOldEntry();
    if (m_settings.status() != QSettings::NoError)
        return; // where nothing can be kept nothing changes
    // The file is replaced by each who writes it, so its folder is what can be watched.
    const QString folder = QFileInfo(m_settings.fileName()).path();
    QDir().mkpath(folder);
    m_watcher.addPath(folder);
    if (QFileInfo::exists(m_loginItem.folder()))
        m_watcher.addPath(m_loginItem.folder());
}

QStringList Preferences::stored(const Preference& preference) const
{
    if (preference.key == PreferenceKey::startAtLogin)
        return {m_loginItem.isEnabled() ? u"true"_s : u"false"_s};
    if (!m_settings.contains(preference.key))
        return preference.initially;
    const QStringList values = m_settings.value(preference.key).toStringList();
    return preference.whatIsWrong(values) ? preference.initially : preference.normalized(values);
}

void Preferences::read()
{
    for (const Preference& preference : preferenceTable())
        m_values.insert(preference.key, stored(preference));
}

void Preferences::reread()
{
    const auto before = m_values;
    m_settings.sync();
    read();
    if (m_values != before)
        emit changed();
}

std::optional<QString> Preferences::set(const Preference& preference, const QStringList& values)
{
    if (auto wrong = preference.whatIsWrong(values))
        return wrong;
    const QStringList kept = preference.normalized(values);
    if (preference.key == PreferenceKey::startAtLogin) {
        if (kept != stored(preference) && !m_loginItem.set(kept.constFirst() == "true"_L1))
            return u"the autostart entry cannot be written"_s;
    } else {
        m_settings.setValue(preference.key, preference.isSingle() ? QVariant(kept.constFirst()) : QVariant(kept));
        m_settings.sync();
        if (m_settings.status() != QSettings::NoError)
            return u"'%1' cannot be written"_s.arg(m_settings.fileName());
    }
    reread();
    return std::nullopt;
}

bool Preferences::once(const QString& what)
{
    if (m_settings.status() != QSettings::NoError || m_settings.contains(what))
        return false; // where nothing can be kept it would be done again and again
    m_settings.setValue(what, true);
    return true;
}

} // namespace Clipboard
