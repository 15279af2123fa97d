#include "RunningTessaly.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

constexpr int trayIconLimit = 32;    // the tray host of the session is 28 high; a notice is 40
constexpr int propertyLength = 4096; // 32-bit units; more than any title or class is long

QByteArray property(xcb_connection_t* connection, quint32 window, const char* name)
{
    const auto atomCookie = xcb_intern_atom(connection, 1, static_cast<uint16_t>(qstrlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
    if (!atom || atom->atom == XCB_NONE) {
        return {};
    }
    const auto cookie = xcb_get_property(connection, 0, window, atom->atom, XCB_ATOM_ANY, 0, propertyLength);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (!reply) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

quint32 rootWindow(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

QRect geometryOnScreen(xcb_connection_t* connection, quint32 window)
{
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr), &std::free);
    const auto cookie = xcb_translate_coordinates(connection, window, rootWindow(connection), 0, 0);
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(connection, cookie, nullptr),
                                                          &std::free);
    return size && origin ? QRect(origin->dst_x, origin->dst_y, size->width, size->height) : QRect();
}

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
    m_process = &m_session.start(m_program, {}, {}, m_session.homePath(u"reports"_s));
    return m_moments.next("watching", VirtualSession::defaultTimeout);
}

int RunningTessaly::stop(int signal)
{
    ::kill(static_cast<pid_t>(processID()), signal);
    m_process->waitForFinished(VirtualSession::defaultTimeout);
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
        if (!window.overridesRedirect && window.title == title && window.geometry.height() > trayIconLimit) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<RunningTessaly::Window> RunningTessaly::toast() const
{
    for (const Window& window : windows()) {
        if (window.overridesRedirect && !window.title.isEmpty() && window.geometry.height() > trayIconLimit) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<RunningTessaly::Window> RunningTessaly::trayIcon() const
{
    for (const Window& window : windows()) {
        if (window.geometry.height() <= trayIconLimit) {
            return window;
        }
    }
    return std::nullopt;
}

QList<RunningTessaly::Window> RunningTessaly::windows() const
{
    QList<Window> found;
    collectWindows(rootWindow(m_session.connection()), true, found);
    return found;
}

void RunningTessaly::collectWindows(quint32 window, bool mapped, QList<Window>& found) const
{
    xcb_connection_t* connection = m_session.connection();
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr),
        &std::free);
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr), &std::free);
    if (!attributes || !tree || !mapped) {
        return;
    }
    if (attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
        property(connection, window, "WM_CLASS").toLower().startsWith("tessaly")) {
        found.append({window, geometryOnScreen(connection, window),
                      QString::fromUtf8(property(connection, window, "_NET_WM_NAME")),
                      attributes->override_redirect != 0});
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        collectWindows(children[i], attributes->map_state == XCB_MAP_STATE_VIEWABLE, found);
    }
}

quint32 RunningTessaly::activeWindow() const
{
    const QByteArray value = property(m_session.connection(), rootWindow(m_session.connection()), "_NET_ACTIVE_WINDOW");
    quint32 window = 0;
    if (value.size() == sizeof window) {
        std::memcpy(&window, value.constData(), sizeof window);
    }
    return window;
}

bool RunningTessaly::waitForPanel(bool visible)
{
    return VirtualSession::waitUntil([&] {
        const std::optional<Window> window = panel();
        return visible ? window && activeWindow() == window->id : !window;
    });
}

void RunningTessaly::press(const QString& chord)
{
    m_session.run(u"xdotool"_s, {u"key"_s, chord});
}

void RunningTessaly::type(const QString& text)
{
    m_session.run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"5"_s, text});
}

void RunningTessaly::click(QPoint position, int times, int button)
{
    m_session.run(u"xdotool"_s,
                  {u"mousemove"_s, QString::number(position.x()), QString::number(position.y()), u"click"_s,
                   u"--repeat"_s, QString::number(times), u"--delay"_s, u"60"_s, QString::number(button)});
}

} // namespace Clipboard::Testing
