#pragma once

#include "LoginItem.h"
#include "PreferenceTable.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QSettings>
#include <QTimer>

namespace Clipboard {

/// What the user has chosen, in the user defaults. What was written there by hand or by another version, and cannot be,
/// counts as nothing. Main thread only.
class Preferences final : public QObject
{
    Q_OBJECT
public:
    explicit Preferences(LoginItem loginItem = LoginItem(), QObject* parent = nullptr);

    /// Hears of what others write from now on, such as 'tessaly config set', and takes over what earlier versions kept
    /// elsewhere.
    void follow();

    [[nodiscard]] QStringList values(QLatin1String key) const { return m_values.value(key); }
    [[nodiscard]] QString value(QLatin1String key) const { return values(key).value(0); }
    [[nodiscard]] bool flag(QLatin1String key) const { return value(key) == QLatin1String("true"); }
    [[nodiscard]] int number(QLatin1String key) const { return value(key).toInt(); }

    /// Keeps the value at once. Otherwise why not, in English for a terminal.
    [[nodiscard]] std::optional<QString> set(const Preference& preference, const QStringList& values);

    /// Takes over what others have written by now.
    void reread();

    /// Whether something was ever done or shown once; notes that it now has been.
    [[nodiscard]] bool once(const QString& what);

signals:
    /// Any of them has another value now.
    void changed();

private:
    void read();
    [[nodiscard]] QStringList stored(const Preference& preference) const;

    QSettings m_settings;
    LoginItem m_loginItem;
    QHash<QString, QStringList> m_values;
    QFileSystemWatcher m_watcher;
    QTimer m_reread; // one change comes as several events
};

} // namespace Clipboard
