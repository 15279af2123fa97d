#include "DesktopMotion.h"

#include "Motion.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String path("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");

// GNOME and those who follow it say yes or no, KDE by how much; each portal knows its own.
constexpr QLatin1String gnomeGroup("org.gnome.desktop.interface");
constexpr QLatin1String gnomeKey("enable-animations");
constexpr QLatin1String kdeGroup("org.kde.kdeglobals.KDE");
constexpr QLatin1String kdeKey("AnimationDurationFactor");

/// The value itself: the portal wraps it once or twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopMotion::DesktopMotion(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<QDBusVariant>(); // looked up by name; without it the next line has no effect
    QDBusConnection::sessionBus().connect(service, path, interface, u"SettingChanged"_s, this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(gnomeGroup, gnomeKey);
    ask(kdeGroup, kdeKey);
}

void DesktopMotion::ask(const QString& group, const QString& key)
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    question.setAutoStartService(false); // a desktop without portal is no reason to start one
    question << group << key;
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (!reply.isError())
            settingChanged(group, key, reply.value());
    });
}

void DesktopMotion::settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    const QVariant setting = unwrapped(value.variant());
    if (group == gnomeGroup && key == gnomeKey)
        m_gnomeReduced = !setting.toBool();
    else if (group == kdeGroup && key == kdeKey)
        m_kdeReduced = setting.toDouble() <= 0;
    else
        return;
    Motion::setReduced(m_gnomeReduced || m_kdeReduced);
}

} // namespace Clipboard
