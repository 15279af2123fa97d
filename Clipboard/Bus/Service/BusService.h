#pragma once

#include "EntryIntake.h"
#include "EntryWatch.h"
#include "History/JSONHistoryStore.h"

#include <QDBusVirtualObject>
#include <QString>
#include <QThreadPool>
#include <QVariant>

#include <functional>

class QDBusMessage;

namespace Clipboard {
class HistoryViewModel;
class PauseTimer;
} // namespace Clipboard

namespace Clipboard::Bus {

/// The program on the session bus (docs/bus.md): for the desktop org.freedesktop.Application, for scripts and the
/// commands of the terminal an interface of its own. Nobody waits for its work but who asked for it. Main thread only.
class BusService final : public QDBusVirtualObject
{
    Q_OBJECT
public:
    /// What it makes known and what it can ask for.
    struct Program
    {
        ClipboardCore::JSONHistoryStore& store;
        HistoryViewModel& history;
        QString imagesDir;
        std::function<void()> toggle;
        std::function<void()> show;
        std::function<void()> hide;
        /// The window in front is the one that the next paste goes to.
        std::function<void()> aim;
        std::function<void()> quit;
        PauseTimer& pause;
        std::function<void(std::function<void(const QVariantMap&)>)> status; // which it may take a while to find out
        std::function<void()> preferences;
    };

    explicit BusService(Program program, QObject* parent = nullptr);
    ~BusService() override;

    /// Asks the bus for the program's name, without waiting for the answer. Nothing happens in a session without a bus.
    void announce();

    [[nodiscard]] bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    struct Failure
    {
        QString name;
        QString text;
    };
    /// Answers the message, now or later.
    using Method = void (BusService::*)(const QDBusMessage& message);
    struct Entry
    {
        QLatin1String interface;
        QLatin1String name;
        QLatin1String signature;
        Method method;
    };
    [[nodiscard]] static const Entry* find(const QDBusMessage& message);

    void answer(const QDBusMessage& message, const QVariantList& values = {});
    /// Once the change that was asked for would survive the end of the process.
    void answerWhenRecorded(const QDBusMessage& message, const QVariantList& values = {});
    void refuse(const QDBusMessage& message, const Failure& failure);
    void tell(const QString& signal, const QVariantList& values);
    /// The entry that the first argument names; refuses when there is none.
    [[nodiscard]] std::optional<ClipboardCore::ClipItem> named(const QDBusMessage& message);
    void command(const QDBusMessage& message, void (HistoryViewModel::*carryOut)(const ClipboardCore::ClipItem&));

    // org.freedesktop.Application
    void activate(const QDBusMessage& message);
    void open(const QDBusMessage& message);
    void activateAction(const QDBusMessage& message);
    // com.tessaly.Tessaly
    void toggle(const QDBusMessage& message);
    void hide(const QDBusMessage& message);
    void quit(const QDBusMessage& message);
    void list(const QDBusMessage& message);
    void findEntry(const QDBusMessage& message);
    void get(const QDBusMessage& message);
    void add(const QDBusMessage& message);
    void copy(const QDBusMessage& message);
    void paste(const QDBusMessage& message);
    void pin(const QDBusMessage& message);
    void unpin(const QDBusMessage& message);
    void remove(const QDBusMessage& message);
    void clear(const QDBusMessage& message);
    void listActions(const QDBusMessage& message);
    void run(const QDBusMessage& message);
    void annotate(const QDBusMessage& message);
    void pause(const QDBusMessage& message);
    void resume(const QDBusMessage& message);
    void status(const QDBusMessage& message);
    void showPreferences(const QDBusMessage& message);

    Program m_program;
    EntryWatch m_watch;
    EntryIntake m_intake;
    QThreadPool m_queries; // one thread: answers come in the order of the questions
};

} // namespace Clipboard::Bus
