#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariant>

#include <functional>

namespace Clipboard {

/// One question to the desktop's portal: the method answers at once, with the path of a request, and a signal from
/// there brings the answer, which may take the user's time. Deletes itself after that, or with its parent.
class PortalRequest final : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        granted,
        refused, // by the user
        failed
    };
    using Done = std::function<void(Outcome outcome, const QVariantMap& results)>;

    struct Question
    {
        QString interface;
        QString method;
        QVariantList arguments; // but for the options, which come last
        QVariantMap options;
    };
    /// Never calls `done` before the event loop runs.
    PortalRequest(const QDBusConnection& bus, const Question& question, Done done, QObject* parent);
    /// Nobody wants to hear the answer any more.
    void forget();

    static inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");

private slots:
    void respond(uint response, const QVariantMap& results);

private:
    void finish(Outcome outcome, const QVariantMap& results);

    Done m_done;
};

} // namespace Clipboard
