#include "SwayDriver.h"

#include "VirtualKeyboard.h"
#include "VirtualSession.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace Clipboard::Testing {

namespace {

void collect(const QJsonObject& node, QList<QJsonObject>& found)
{
    if (node.contains("pid"_L1))
        found.append(node);
    for (const auto& key : {"nodes"_L1, "floating_nodes"_L1}) {
        for (const auto& child : node.value(key).toArray())
            collect(child.toObject(), found);
    }
}

Desktop::Window describe(const QJsonObject& node)
{
    const QJsonObject rect = node.value("rect"_L1).toObject();
    const auto number = [&](QLatin1StringView name) { return rect.value(name).toInt(); };
    // Those of X11 are known by the numbers that they have there.
    const auto id = node.value(node.value("window"_L1).isDouble() ? "window"_L1 : "id"_L1).toInt();
    return {static_cast<quint32>(id), QRect(number("x"_L1), number("y"_L1), number("width"_L1), number("height"_L1)),
            node.value("name"_L1).toString(), false};
}

} // namespace

SwayDriver::SwayDriver(VirtualSession& session)
    : WaylandDriver(session)
{
}

void SwayDriver::command(const QString& words) const
{
    session().run(u"swaymsg"_s, {words});
}

bool SwayDriver::plugIn()
{
    m_keyboard = std::make_unique<VirtualKeyboard>(session());
    m_pointer = std::make_unique<WaylandPointer>(session());
    return m_keyboard->isPluggedIn() && m_pointer->isPluggedIn();
}

void SwayDriver::movePointer(QPoint place)
{
    m_pointer->move(place, size());
}

void SwayDriver::click(QPoint place, int times, int button)
{
    movePointer(place);
    for (int i = 0; i < times; ++i) {
        m_pointer->set(button, true);
        m_pointer->set(button, false);
    }
}

void SwayDriver::turnWheel(int notches)
{
    for (int i = 0; i < notches; ++i)
        m_pointer->turnWheel();
}

void SwayDriver::pressButton()
{
    m_pointer->set(1, true);
}

void SwayDriver::releaseButton()
{
    m_pointer->set(1, false);
}

QStringList SwayDriver::terminal(const QString& title, const QString& command) const
{
    return {u"foot"_s, u"--title"_s, title, u"sh"_s, u"-c"_s, command};
}

QList<QJsonObject> SwayDriver::windows() const
{
    const auto tree = session().run(u"swaymsg"_s, {u"-t"_s, u"get_tree"_s}).output;
    QList<QJsonObject> found;
    collect(QJsonDocument::fromJson(tree).object(), found);
    return found;
}

QList<SwayDriver::Window> SwayDriver::windowsOf(const QByteArray& program) const
{
    QList<Window> found = x11().windowsOf(program);
    for (const QJsonObject& node : windows()) {
        if (node.value("app_id"_L1).toString().contains(QLatin1StringView(program)))
            found.append(describe(node));
    }
    return found;
}

std::optional<SwayDriver::Window> SwayDriver::activeWindow() const
{
    for (const QJsonObject& node : windows()) {
        if (node.value("focused"_L1).toBool())
            return describe(node);
    }
    return {};
}

QSize SwayDriver::size() const
{
    const auto outputs = session().run(u"swaymsg"_s, {u"-t"_s, u"get_outputs"_s}).output;
    const QJsonObject rect = QJsonDocument::fromJson(outputs).array().at(0).toObject().value("rect"_L1).toObject();
    return {rect.value("width"_L1).toInt(), rect.value("height"_L1).toInt()};
}

QByteArray SwayDriver::picture(QRect part) const
{
    const QString place = u"%1,%2 %3x%4"_s.arg(part.x()).arg(part.y()).arg(part.width()).arg(part.height());
    return session().run(u"grim"_s, {u"-g"_s, place, u"-t"_s, u"ppm"_s, u"-"_s}).output;
}

void SwayDriver::place(const Window& window, QRect geometry)
{
    command(u"[con_id=%1] floating enable, resize set %2 px %3 px, move absolute position %4 px %5 px"_s.arg(window.id)
                .arg(geometry.width())
                .arg(geometry.height())
                .arg(geometry.x())
                .arg(geometry.y()));
}

} // namespace Clipboard::Testing
