// Takes the pictures of the built program: each scene in a session of its own, cropped to the window with its shadow.
#include "Journey.h"
#include "SampleHistory.h"
#include "Shadow.h"
#include "Theme.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>

#include <algorithm>
#include <cstdio>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;
using namespace Clipboard;
using namespace Clipboard::Testing;

namespace {

constexpr QSize screen{1280, 960}; // logical pixels; notices appear below the panel
constexpr int around = 24;         // logical pixels of the desktop around the menu
constexpr int controlReach = 22;   // from the middle of a control to beyond its edge
constexpr int tipReach = 60;       // and into its tip
constexpr quint32 desktopColor = 0x2B3242;

struct Step
{
    enum class Kind { press, type, point, click, drag };
    Kind kind;
    QString text = {};
    QPoint place = {}; // logical pixels in the panel or in the editor's window; of a drag: pixels of the edited picture
    QPoint end = {};
};

using Steps = QList<Step>;

Steps key(const char* chord, int times = 1)
{
    return Steps(times, {Step::Kind::press, QString::fromLatin1(chord)});
}

Steps letters(const char* text)
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

Steps stroke(QPoint from, QPoint to)
{
    return {{Step::Kind::drag, {}, from, to}};
}

Steps clickPicture(QPoint place)
{
    return stroke(place, place);
}

Steps go(SampleRow row)
{
    return key("Down", static_cast<int>(row));
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
    return key("h") + clickAt(yellow) + stroke({424, 112}, {632, 148}) + key("n") + clickAt(blue) +
           clickPicture({330, 226}) + clickPicture({330, 776}) + clickPicture({1298, 60}) + key("p") +
           stroke({1276, 362}, {1524, 474}) + key("a") + clickAt(red) + stroke({1340, 850}, {1422, 690}) + key("r") +
           stroke({346, 628}, {1076, 684}) + key("t") + clickPicture({1206, 850}) + letters("Leave at side door") +
           key("Escape") + key("a");
}

QList<Scene> scenes()
{
    using enum Scene::Stage;
    return {
        {"panel-text", panel, go(SampleRow::text)},
        {"panel-code", panel, go(SampleRow::code)},
        {"panel-color", panel, go(SampleRow::color)},
        {"panel-image", panel, go(SampleRow::landscape) + pointAt(annotateButton)},
        {"panel-link-qr", panel, go(SampleRow::link) + key("ctrl+k") + letters("qr") + key("Return")},
        {"panel-focus-chip", panel, go(SampleRow::text) + key("Right") + key("Down")},
        {"panel-file", panel, go(SampleRow::file)},
        {"panel-empty", emptyPanel, {}},
        {"panel-noresults", panel, letters("lighthouse keeper")},
        {"panel-menu", panel, key("F10")},
        {"panel-row-menu", panel, go(SampleRow::link) + key("Menu")},
        {"command-sheet", panel, go(SampleRow::text) + key("ctrl+k")},
        {"toast", document, go(SampleRow::link) + key("Return")},
        {"editor", editor, marks() + clickPicture({346, 650}) + pointAt(highlighterButton)},
        {"editor-crop", editor, marks() + key("c") + stroke({0, 0}, {300, 24}) + stroke({1600, 1000}, {1576, 724})},
        {"editor-discard", editor, marks() + key("Escape")},
        {"tray-menu", menu, key("Down")},
        {"clear-dialog", dialog, {}},
    };
}

class Stage final : public Journey
{
public:
    Stage(const Scene& scene, int scale, const QString& program);

    /// Plays the scene and takes its picture. Nothing when it did not come to that.
    [[nodiscard]] QImage play();

private:
    void prepare() override;
    void fail(const QString& message, const Where& where) override;
    [[nodiscard]] bool hasFailed() const override { return m_hasFailed; }
    void layDesktop();
    void open();
    void openPanel();
    void openEditor();
    void openMenu();
    void openDialog();
    void perform(const Step& step);
    [[nodiscard]] QByteArray besides(QPoint place);
    [[nodiscard]] QPoint onScreen(QPoint place);
    [[nodiscard]] QPoint inPicture(QPoint place);
    [[nodiscard]] QRect window();
    [[nodiscard]] QRect subject();

    const Scene& m_scene;
    int m_scale;
    bool m_hasFailed = false;
};

Stage::Stage(const Scene& scene, int scale, const QString& program)
    : Journey(program)
    , m_scene(scene)
    , m_scale(scale)
{
}

void Stage::fail(const QString& message, const Where& where)
{
    m_hasFailed = true;
    std::fprintf(stderr, "%s: %s (line %d)\n", m_scene.name, qPrintable(message), where.line());
}

void Stage::prepare()
{
    session().setEnvironment(u"QT_SCALE_FACTOR"_s, QString::number(m_scale));
    layDesktop();
    const QString data = session().homePath(u".local/share/Tessaly"_s);
    if (m_scene.stage != Scene::Stage::emptyPanel &&
        !writeSampleHistory(data, session().home(), QStringLiteral(TESSALY_DRAWINGS)))
        fail(u"the history could not be written"_s, Where::current());
}

/// A window below all others: compositors paint the root window as they like.
void Stage::layDesktop()
{
    xcb_connection_t* connection = session().connection();
    const xcb_screen_t* root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const quint32 values[] = {desktopColor, 1}; // the pixel, and that the window manager leaves it alone
    const quint32 window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root->root, 0, 0, root->width_in_pixels,
                      root->height_in_pixels, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, root->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(connection, window);
    const quint32 below[] = {XCB_STACK_MODE_BELOW};
    xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, below);
    xcb_flush(connection);
}

void Stage::open()
{
    switch (m_scene.stage) {
    case Scene::Stage::panel:
    case Scene::Stage::emptyPanel:
        return openPanel();
    case Scene::Stage::document:
        openTerminal();
        return openPanel();
    case Scene::Stage::editor:
        return openEditor();
    case Scene::Stage::menu:
        return openMenu();
    case Scene::Stage::dialog:
        return openDialog();
    }
}

void Stage::openPanel()
{
    // Without a tray the panel opens below the pointer, here so that its whole shadow is on the screen.
    desktop().movePointer(QPoint(screen.width() / 2, 100) * m_scale);
    callUp();
}

void Stage::openEditor()
{
    openPanel();
    for (const Step& step : go(SampleRow::order) + key("ctrl+e"))
        perform(step);
    expectFront("Annotate");
}

void Stage::openMenu()
{
    clickTrayIcon(3);
    expect("the menu", [this] { return tessaly().windows().size() > 1; });
}

void Stage::openDialog()
{
    openMenu();
    press("Down Return");
    expect("the dialog with the keyboard", [this] { return tessaly().activeWindow() != 0; });
}

void Stage::perform(const Step& step)
{
    switch (step.kind) {
    case Step::Kind::press:
        return press(step.text);
    case Step::Kind::type:
        return type(step.text);
    case Step::Kind::point: {
        const QPoint place = onScreen(step.place);
        const QByteArray before = besides(place);
        desktop().movePointer(place);
        return expect("a tip beside it", [&] { return besides(place) != before; });
    }
    case Step::Kind::click:
        return click(onScreen(step.place));
    case Step::Kind::drag:
        return desktop().drag({inPicture(step.place), inPicture((step.place + step.end) / 2), inPicture(step.end)});
    }
}

/// What can be seen above and below a control, where its tip appears.
QByteArray Stage::besides(QPoint place)
{
    const QByteArray pixels = desktop().pixels();
    const qsizetype rowBytes = pixels.size() / desktop().size().height();
    const auto rows = [&](int from, int to) {
        return pixels.mid((place.y() + from * m_scale) * rowBytes, (to - from) * (m_scale * rowBytes));
    };
    return rows(-tipReach, -controlReach) + rows(controlReach, tipReach);
}

QPoint Stage::onScreen(QPoint place)
{
    const QMargins margins = m_scene.stage == Scene::Stage::editor ? QMargins() : panelShadow.margins();
    return window().topLeft() + (QPoint(margins.left(), margins.top()) + place) * m_scale;
}

/// The editor fits the picture between its bars, with a margin around it.
QPoint Stage::inPicture(QPoint place)
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
QRect Stage::window()
{
    QRect largest;
    for (const Window& window : tessaly().windows()) {
        const QRect area = window.geometry;
        if (area.width() * area.height() > largest.width() * largest.height())
            largest = area;
    }
    return largest;
}

/// The place of the picture: the window, or the menu with the icon that it hangs from.
QRect Stage::subject()
{
    if (m_scene.stage != Scene::Stage::menu)
        return window();
    const int margin = around * m_scale;
    return (window() | tessaly().trayIcon().value_or(Window()).geometry).adjusted(-margin, -margin, margin, margin);
}

QImage Stage::play()
{
    const bool hasTray = m_scene.stage == Scene::Stage::menu || m_scene.stage == Scene::Stage::dialog;
    begin({.size = screen * m_scale, .trayHost = hasTray, .compositor = true});
    if (m_hasFailed)
        return {};
    open();
    for (const Step& step : m_scene.steps) {
        expectStillness();
        perform(step);
    }
    if (m_scene.stage == Scene::Stage::document) {
        expectNoPanel();
        expect("the notice", [this] { return tessaly().toast().has_value(); });
    }
    expectStillness();
    const QRect place = subject();
    const QString file = session().homePath(u"screen.png"_s);
    if (m_hasFailed || place.isEmpty() || !session().screenshot(file))
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
