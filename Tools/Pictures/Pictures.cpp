// Takes the pictures of the built program: each scene in a session of its own, cropped to the window with its shadow.
#include "RunningTessaly.h"
#include "SampleHistory.h"
#include "Shadow.h"
#include "Theme.h"
#include "VirtualSession.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;
using namespace Clipboard;
using namespace Clipboard::Testing;

namespace {

constexpr unsigned long settle = 350;  // ms; longer than any animation
constexpr unsigned long tooltip = 700; // ms; longer than the pointer has to rest
constexpr QSize screen{1280, 960};     // logical pixels; notices appear below the panel
constexpr int around = 24;             // logical pixels of the desktop around the menu
constexpr quint32 desktop = 0x2B3242;  // its colour

struct Step
{
    enum class Kind { press, type, point, click, drag };
    Kind kind;
    QString text = {};
    QPoint place = {}; // logical pixels in the panel or in the editor's window; of a drag: pixels of the edited picture
    QPoint end = {};
};

using Steps = QList<Step>;

Steps press(const char* chord, int times = 1)
{
    return Steps(times, {Step::Kind::press, QString::fromLatin1(chord)});
}

Steps type(const char* text)
{
    return {{Step::Kind::type, QString::fromLatin1(text)}};
}

/// The pointer rests there until a tooltip appears.
Steps pointAt(QPoint place)
{
    return {{Step::Kind::point, {}, place}};
}

Steps clickAt(QPoint place)
{
    return {{Step::Kind::click, {}, place}};
}

Steps drag(QPoint from, QPoint to)
{
    return {{Step::Kind::drag, {}, from, to}};
}

Steps clickPicture(QPoint place)
{
    return drag(place, place);
}

Steps go(SampleRow row)
{
    return press("Down", static_cast<int>(row));
}

struct Scene
{
    /// What is on the screen before its steps begin.
    enum class Stage { panel, emptyPanel, document, editor, menu, dialog };
    const char* name;
    Stage stage;
    Steps steps;
};

// Where things stand in their windows.
const QPoint annotateButton(511, 482);
const QPoint highlighterButton(182, 26);
const QPoint red(315, 26);
const QPoint yellow(345, 26);
const QPoint blue(405, 26);

/// Some marks of each kind on the picture of an order.
Steps marks()
{
    return press("h") + clickAt(yellow) + drag({424, 112}, {632, 148}) + press("n") + clickAt(blue) +
           clickPicture({330, 226}) + clickPicture({330, 776}) + clickPicture({1298, 60}) + press("p") +
           drag({1276, 362}, {1524, 474}) + press("a") + clickAt(red) + drag({1340, 850}, {1422, 690}) + press("r") +
           drag({346, 628}, {1076, 684}) + press("t") + clickPicture({1206, 850}) + type("Leave at side door") +
           press("Escape") + press("a");
}

QList<Scene> scenes()
{
    using enum Scene::Stage;
    return {
        {"panel-text", panel, go(SampleRow::text)},
        {"panel-code", panel, go(SampleRow::code)},
        {"panel-color", panel, go(SampleRow::color)},
        {"panel-image", panel, go(SampleRow::landscape) + pointAt(annotateButton)},
        {"panel-link-qr", panel, go(SampleRow::link) + press("ctrl+k") + type("qr") + press("Return")},
        {"panel-focus-chip", panel, go(SampleRow::text) + press("Right") + press("Down")},
        {"panel-file", panel, go(SampleRow::file)},
        {"panel-empty", emptyPanel, {}},
        {"panel-noresults", panel, type("lighthouse keeper")},
        {"command-sheet", panel, go(SampleRow::text) + press("ctrl+k")},
        {"toast", document, go(SampleRow::link) + press("Return")},
        {"editor", editor, marks() + clickPicture({346, 650}) + pointAt(highlighterButton)},
        {"editor-crop", editor, marks() + press("c") + drag({0, 0}, {300, 24}) + drag({1600, 1000}, {1576, 724})},
        {"editor-discard", editor, marks() + press("Escape")},
        {"tray-menu", menu, press("Down")},
        {"clear-dialog", dialog, {}},
    };
}

class Stage final
{
public:
    Stage(const Scene& scene, int scale, const QString& program);

    /// Plays the scene and takes its picture. Nothing when it did not come to that.
    [[nodiscard]] QImage play();

private:
    [[nodiscard]] bool prepare();
    void layDesktop();
    [[nodiscard]] bool open();
    [[nodiscard]] bool openPanel();
    [[nodiscard]] bool openEditor();
    [[nodiscard]] bool openMenu();
    [[nodiscard]] bool openDialog();
    [[nodiscard]] bool openDocument();
    void perform(const Step& step);
    void movePointer(QPoint place);
    [[nodiscard]] QPoint onScreen(QPoint place) const;
    [[nodiscard]] QPoint inPicture(QPoint place) const;
    [[nodiscard]] QRect window() const;
    [[nodiscard]] QRect subject() const;

    const Scene& m_scene;
    int m_scale;
    VirtualSession m_session;
    RunningTessaly m_tessaly;
};

Stage::Stage(const Scene& scene, int scale, const QString& program)
    : m_scene(scene)
    , m_scale(scale)
    , m_session({.size = screen * scale,
                 .trayHost = scene.stage == Scene::Stage::menu || scene.stage == Scene::Stage::dialog,
                 .compositor = true})
    , m_tessaly(m_session, program)
{
}

bool Stage::prepare()
{
    if (!m_session.failure().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(m_session.failure()));
        return false;
    }
    m_session.setEnvironment(u"QT_SCALE_FACTOR"_s, QString::number(m_scale));
    layDesktop();
    const bool isEmpty = m_scene.stage == Scene::Stage::emptyPanel;
    return (isEmpty ||
            writeSampleHistory(m_tessaly.dataFolder(), m_session.home(), QStringLiteral(TESSALY_DRAWINGS))) &&
           m_tessaly.start().has_value();
}

/// A window below all others: compositors paint the root window as they like.
void Stage::layDesktop()
{
    xcb_connection_t* connection = m_session.connection();
    const xcb_screen_t* root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const quint32 values[] = {desktop, 1}; // the pixel, and that the window manager leaves it alone
    const quint32 window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root->root, 0, 0, root->width_in_pixels,
                      root->height_in_pixels, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, root->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(connection, window);
    const quint32 below[] = {XCB_STACK_MODE_BELOW};
    xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, below);
    xcb_flush(connection);
}

bool Stage::open()
{
    switch (m_scene.stage) {
    case Scene::Stage::panel:
    case Scene::Stage::emptyPanel:
        return openPanel();
    case Scene::Stage::document:
        return openDocument();
    case Scene::Stage::editor:
        return openEditor();
    case Scene::Stage::menu:
        return openMenu();
    case Scene::Stage::dialog:
        return openDialog();
    }
    return false;
}

bool Stage::openPanel()
{
    // Without a tray the panel opens below the pointer, here so that its whole shadow is on the screen.
    movePointer(QPoint(screen.width() / 2, 100) * m_scale);
    m_tessaly.press(u"super+shift+v"_s);
    return m_tessaly.waitForPanel(true);
}

bool Stage::openEditor()
{
    if (!openPanel())
        return false;
    for (const Step& step : go(SampleRow::order) + press("ctrl+e"))
        perform(step);
    return VirtualSession::waitUntil([&] {
        return std::ranges::any_of(m_tessaly.windows(), [&](const RunningTessaly::Window& window) {
            return window.title == u"Annotate"_s && window.id == m_tessaly.activeWindow();
        });
    });
}

bool Stage::openMenu()
{
    if (!VirtualSession::waitUntil([&] { return m_tessaly.trayIcon().has_value(); }))
        return false;
    m_tessaly.click(m_tessaly.trayIcon()->geometry.center(), 1, 3);
    return VirtualSession::waitUntil([&] { return m_tessaly.windows().size() > 1; });
}

bool Stage::openDialog()
{
    if (!openMenu())
        return false;
    m_tessaly.press(u"Down"_s);
    m_tessaly.press(u"Return"_s);
    return VirtualSession::waitUntil([&] { return m_tessaly.activeWindow() != 0; });
}

bool Stage::openDocument()
{
    const QStringList front = {u"getactivewindow"_s, u"getwindowname"_s};
    m_session.start(u"xterm"_s, {u"-T"_s, u"document"_s, u"-e"_s, u"cat"_s});
    return VirtualSession::waitUntil(
               [&] { return m_session.run(u"xdotool"_s, front).output.startsWith("document"); }) &&
           openPanel();
}

void Stage::perform(const Step& step)
{
    switch (step.kind) {
    case Step::Kind::press:
        return m_tessaly.press(step.text);
    case Step::Kind::type:
        return m_tessaly.type(step.text);
    case Step::Kind::point:
        movePointer(onScreen(step.place));
        return QThread::msleep(tooltip);
    case Step::Kind::click:
        return m_tessaly.click(onScreen(step.place));
    case Step::Kind::drag:
        movePointer(inPicture(step.place));
        m_session.run(u"xdotool"_s, {u"mousedown"_s, u"1"_s});
        movePointer(inPicture((step.place + step.end) / 2));
        movePointer(inPicture(step.end));
        m_session.run(u"xdotool"_s, {u"mouseup"_s, u"1"_s});
    }
}

void Stage::movePointer(QPoint place)
{
    m_session.run(u"xdotool"_s, {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())});
}

QPoint Stage::onScreen(QPoint place) const
{
    const QMargins margins = m_scene.stage == Scene::Stage::editor ? QMargins() : panelShadow.margins();
    return window().topLeft() + (QPoint(margins.left(), margins.top()) + place) * m_scale;
}

/// The editor fits the picture between its bars, with a margin around it.
QPoint Stage::inPicture(QPoint place) const
{
    constexpr int toolbar = 52;
    constexpr int hints = 36;
    constexpr int margin = 36;
    const QRectF canvas = QRectF(window()).adjusted(0, toolbar * m_scale, 0, -hints * m_scale);
    const QSizeF room = canvas.size() - QSizeF(2 * margin, 2 * margin) * m_scale;
    const double zoom = std::min(
        {room.width() / orderPicture.width(), room.height() / orderPicture.height(), static_cast<double>(m_scale)});
    return (canvas.center() + (QPointF(place) - QPointF(orderPicture.width(), orderPicture.height()) / 2) * zoom)
        .toPoint();
}

/// The window that the scene is about.
QRect Stage::window() const
{
    QRect largest;
    for (const RunningTessaly::Window& window : m_tessaly.windows()) {
        const QRect area = window.geometry;
        if (area.width() * area.height() > largest.width() * largest.height())
            largest = area;
    }
    return largest;
}

/// The place of the picture: the window, or the menu with the icon that it hangs from.
QRect Stage::subject() const
{
    if (m_scene.stage != Scene::Stage::menu)
        return window();
    const int margin = around * m_scale;
    return (window() | m_tessaly.trayIcon()->geometry).adjusted(-margin, -margin, margin, margin);
}

QImage Stage::play()
{
    if (!prepare() || !open())
        return {};
    for (const Step& step : m_scene.steps) {
        perform(step);
        QThread::msleep(settle / 4);
    }
    if (m_scene.stage == Scene::Stage::document && !m_tessaly.waitForPanel(false))
        return {};
    QThread::msleep(settle);
    const QRect place = subject();
    const QString file = m_session.homePath(u"screen.png"_s);
    if (place.isEmpty() || !m_session.screenshot(file))
        return {};
    const QImage picture(file);
    return picture.copy(place & picture.rect());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // it draws the pictures that are copied, and shows nothing
    const QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        std::fputs("usage: tessaly-pictures <program> <folder> <scale> [<scene> …]\n", stderr);
        return 2;
    }
    const QDir folder(arguments[2]);
    const int scale = arguments[3].toInt();
    const QStringList wanted = arguments.mid(4);
    bool complete = folder.mkpath(u"."_s);
    for (const Scene& scene : scenes()) {
        const QString name = QString::fromLatin1(scene.name);
        if (!wanted.isEmpty() && !wanted.contains(name))
            continue;
        const QImage picture = Stage(scene, scale, QFileInfo(arguments[1]).absoluteFilePath()).play();
        const bool saved = !picture.isNull() && picture.save(folder.filePath(name + u".png"_s));
        std::printf("%s: %s\n", scene.name, saved ? "taken" : "did not come up");
        std::fflush(stdout);
        complete = complete && saved;
    }
    return complete ? 0 : 1;
}
