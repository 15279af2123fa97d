#include "PortalRequest.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

// The portal takes the question; it is the answer that takes the user's time, and that has no limit.
constexpr std::chrono::milliseconds callLimit{5000};

/// The last part of the request's path, which is the program's to choose.
QString nextToken()
{
    static int count = 0;
    return u"tessaly%1"_s.arg(++count);
}

} // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, const Question& question, Done done, QObject* parent)
    : QObject(parent)
    , m_done(std::move(done))
{
    const QString token = nextToken();
    // The answer may come before that of the method: the path is listened to beforehand.
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    QDBusConnection(bus).connect(service, objectPath + u"/request/"_s + sender + u'/' + token,
                                 u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                                 SLOT(respond(uint, QVariantMap)));
    QVariantMap options = question.options;
    options.insert(u"handle_token"_s, token);
    auto message = QDBusMessage::createMethodCall(service, objectPath, question.interface, question.method);
    message.setAutoStartService(false);
    message.setArguments(question.arguments + QVariantList{options});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, callLimit.count()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (watcher->isError())
            finish(Outcome::failed, {});
    });
}

void PortalRequest::forget()
{
    m_done = {};
    deleteLater();
}

void PortalRequest::respond(uint response, const QVariantMap& results)
{
    constexpr uint success = 0;
    constexpr uint cancelledByUser = 1;
    if (response == success)
        finish(Outcome::granted, results);
    else
        finish(response == cancelledByUser ? Outcome::refused : Outcome::failed, results);
}

void PortalRequest::finish(Outcome outcome, const QVariantMap& results)
{
    if (const Done done = std::exchange(m_done, {}))
        done(outcome, results);
    deleteLater();
}

} // namespace Clipboard
