#include "PlasmaLayout.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace Clipboard {

PlasmaLayout::PlasmaLayout()
{
    const QString service = u"org.kde.keyboard"_s;
    const QString path = u"/Layouts"_s;
    const QString interface = u"org.kde.KeyboardLayouts"_s;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, u"layoutChanged"_s, this, SLOT(layoutChanged(uint)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, u"getLayout"_s);
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        if (const QDBusPendingReply<uint> layout = *finished; layout.isValid())
            layoutChanged(layout.value());
        finished->deleteLater();
    });
}

} // namespace Clipboard
