#pragma once

#include <QDBusVariant>
#include <QObject>

namespace Clipboard {

/// Hears from the settings portal whether the desktop's animations are on, and hands it to Motion.
class DesktopMotion final : public QObject
{
    Q_OBJECT
public:
    explicit DesktopMotion(QObject* parent);

private slots: // by name, as a bus signal needs it
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& group, const QString& key);

    // Some portals know both settings: either one is a wish.
    bool m_gnomeReduced = false;
    bool m_kdeReduced = false;
};

} // namespace Clipboard
