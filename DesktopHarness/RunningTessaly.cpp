#include "RunningTessaly.h"

#include "SwayCompositor.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

constexpr int trayIconLimit = 32; // the tray host of the session is 28 high; a notice is 40

} // namespace

RunningTessaly::RunningTessaly(VirtualSession& session, QString program)
    : m_session(session)
    , m_program(std::move(program))
    , m_moments(session.homePath(u"reports"_s))
{
    m_session.setEnvironment(u"QT_LOGGING_RULES"_s, QLatin1StringView(MomentLog::rules));
    m_session.setEnvironment(u"QT_MESSAGE_PATTERN"_s, QLatin1StringView(MomentLog::pattern));
}

RunningTessaly::~RunningTessaly()
{
    if (m_process) {
        m_session.kill(*m_process);
    }
}

std::optional<MomentLog::Time> RunningTessaly::start()
{
    if (m_process) {
        m_session.kill(*m_process);
    }
    m_moments.clear();
    beWelcomed();
    m_process = &m_session.start(m_program, {}, {}, m_session.homePath(u"reports"_s));
    const auto watching = m_moments.next("watching", VirtualSession::defaultTimeout);
    if (m_session.kind() == VirtualSession::Kind::sway) {
        SwayCompositor::bindKey(m_session, m_program);
        return watching;
    }
    // It comes later, and what is pressed before goes to another program.
    return m_moments.next("hot-key-grabbed", VirtualSession::defaultTimeout) ? watching : std::nullopt;
}

void RunningTessaly::beWelcomed()
{
    QFile preferences(m_session.homePath(u".config/Tessaly/Tessaly.conf"_s));
    if (QDir().mkpath(QFileInfo(preferences).path()) && preferences.open(QFile::WriteOnly | QFile::NewOnly)) {
        preferences.write("[General]\nwelcomed=true\n");
    }
}

int RunningTessaly::stop(int signal)
{
    ::kill(static_cast<pid_t>(processID()), signal);
    m_process->waitForFinished(VirtualSession::defaultTimeout);
    return exitCode();
}

int RunningTessaly::exitCode() const
{
    return m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -1;
}

qint64 RunningTessaly::processID() const
{
    return m_process->processId();
}

bool RunningTessaly::isRunning() const
{
    return m_process && m_process->state() == QProcess::Running;
}

QString RunningTessaly::dataFolder() const
{
    return m_session.homePath(u".local/share/Tessaly"_s);
}

QString RunningTessaly::historyFile() const
{
    return dataFolder() + u"/history.json"_s;
}

std::optional<QList<RunningTessaly::Entry>> RunningTessaly::history() const
{
    QFile file(historyFile());
    if (!file.open(QFile::ReadOnly)) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<Entry> entries;
    for (const auto& value : document.array()) {
        const QJsonObject entry = value.toObject();
        if (!entry.contains("id"_L1) || !entry.contains("createdAt"_L1)) {
            return std::nullopt;
        }
        entries.append({entry["type"_L1].toString(), entry["content"_L1].toString(), entry["sourceApp"_L1].toString(),
                        entry["bundleID"_L1].toString(), entry["isPinned"_L1].toBool()});
    }
    return entries;
}

bool RunningTessaly::waitForHistory(const std::function<bool(const QList<Entry>&)>& condition)
{
    return VirtualSession::waitUntil([&] {
        const std::optional<QList<Entry>> entries = history();
        return entries && condition(*entries);
    });
}

bool RunningTessaly::waitForNewest(const QString& content)
{
    return waitForHistory(
        [&](const QList<Entry>& entries) { return !entries.isEmpty() && entries.first().content == content; });
}

bool RunningTessaly::waitForCaptures(int count)
{
    for (int i = 0; i < count; ++i) {
        if (!m_moments.next("captured", VirtualSession::defaultTimeout)) {
            return false;
        }
    }
    return true;
}

std::optional<RunningTessaly::Window> RunningTessaly::panel() const
{
    return titled(u"Tessaly"_s);
}

std::optional<RunningTessaly::Window> RunningTessaly::editor() const
{
    return titled(u"Annotate"_s);
}

std::optional<RunningTessaly::Window> RunningTessaly::titled(const QString& title) const
{
    for (const Window& window : windows()) {
        if (!window.isUnmanaged && window.title == title && window.geometry.height() > trayIconLimit) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<RunningTessaly::Window> RunningTessaly::toast() const
{
    for (const Window& window : windows()) {
        if (window.isUnmanaged && !window.title.isEmpty() && window.geometry.height() > trayIconLimit) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<RunningTessaly::Window> RunningTessaly::trayIcon() const
{
    for (const Window& window : windows()) {
        if (window.geometry.height() <= trayIconLimit && window.geometry.width() <= trayIconLimit) { // no tip
            return window;
        }
    }
    return std::nullopt;
}

QList<RunningTessaly::Window> RunningTessaly::windows() const
{
    const Desktop& desktop = m_session.desktop();
    return desktop.windowsOf("tessaly") + desktop.unlisted(m_moments.layers().shown());
}

quint32 RunningTessaly::activeWindow() const
{
    const auto window = m_session.desktop().activeWindow();
    return (window ? window : m_moments.layers().focused()).value_or(Window()).id;
}

bool RunningTessaly::waitForPanel(bool visible)
{
    return VirtualSession::waitUntil([&] {
        const std::optional<Window> window = panel();
        return visible ? window && activeWindow() == window->id : !window;
    });
}

} // namespace Clipboard::Testing
