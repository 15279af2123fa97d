#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QBuffer>
#include <QImage>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

const QString pictureTarget = u"image/png"_s;

constexpr QSize pictureSize(600, 400);
constexpr QRgb frameColor = 0xff12a47b; // nothing else on the screen has it: where it is seen, the picture is
constexpr QRgb ground = 0xffd6e2c8;
constexpr QRgb red = 0xffff3b30;
constexpr QRgb blue = 0xff007aff;

QImage picture()
{
    QImage image(pictureSize, QImage::Format_RGB32);
    image.fill(frameColor);
    for (int y = 2; y < image.height() - 2; ++y) {
        for (int x = 2; x < image.width() - 2; ++x)
            image.setPixel(x, y, ground);
    }
    return image;
}

QByteArray pngOf(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QRect extentOf(const QImage& image, QRgb color, const QRect& within)
{
    QRect extent;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            if (image.pixel(x, y) == color)
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

} // namespace

/// A picture of the history, annotated with a real mouse and keyboard; what comes of it is read by other programs.
class EditorJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void copiesWhatWasDrawn();
    void savesOnce();
    void pastesIntoTheProgramBehindThePanel();
    void keepsTheResultAtTheEnd();
    void cleanupTestCase();

private:
    void openEditor();
    [[nodiscard]] bool waitForEditor(bool visible) const;
    [[nodiscard]] bool waitForNotice(const QString& text) const;
    [[nodiscard]] bool waitForEntries(qsizetype count);
    [[nodiscard]] QImage newestPicture() const;
    [[nodiscard]] QByteArray clipboardPicture() const;

    void drag(QPoint from, QPoint to); // of the picture
    void click(QPoint at);
    void drawMarks();

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
    QRect m_shown; // where on the screen the picture is
    qsizetype m_entries = 0;
};

void EditorJourneyTest::initTestCase()
{
    m_session = std::make_unique<VirtualSession>();
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
}

/// Each function begins with the plain picture as the newest entry.
void EditorJourneyTest::init()
{
    QVERIFY(m_tessaly && m_tessaly->isRunning());
    const QStringList arguments{u"-selection"_s, u"clipboard"_s, u"-t"_s, pictureTarget, u"-i"_s};
    m_tessaly->moments().clear();
    m_session->run(u"xclip"_s, arguments, pngOf(picture()));
    QVERIFY(m_tessaly->waitForCaptures(1));
    m_entries = std::max<qsizetype>(m_entries, 1);
}

void EditorJourneyTest::cleanup()
{
    m_tessaly->press(u"Escape"_s);
    QVERIFY(m_tessaly->waitForPanel(false));
}

void EditorJourneyTest::cleanupTestCase()
{
    if (m_tessaly)
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    m_tessaly.reset();
    m_session.reset();
}

// ── The editor

bool EditorJourneyTest::waitForEditor(bool visible) const
{
    return m_session->waitUntil([&] {
        const std::optional<RunningTessaly::Window> editor = m_tessaly->editor();
        return visible ? editor && m_tessaly->activeWindow() == editor->id : !editor;
    });
}

/// Opens the newest entry, from the panel or from behind it, and finds its picture on the screen.
void EditorJourneyTest::openEditor()
{
    if (!m_tessaly->panel())
        m_tessaly->press(u"super+shift+v"_s);
    QVERIFY(m_tessaly->waitForPanel(true));
    m_tessaly->press(u"ctrl+e"_s);
    QVERIFY(waitForEditor(true));
    QVERIFY(m_session->waitUntil([&] {
        const QString file = m_session->homePath(u"screen.png"_s);
        m_shown =
            m_session->screenshot(file) ? extentOf(QImage(file), frameColor, m_tessaly->editor()->geometry) : QRect();
        return m_shown.size() == pictureSize; // before the first frame it shows what was there
    }));
}

void EditorJourneyTest::drag(QPoint from, QPoint to)
{
    const QPoint start = m_shown.topLeft() + from;
    const QPoint middle = m_shown.topLeft() + (from + to) / 2;
    const QPoint end = m_shown.topLeft() + to;
    const auto move = [](QPoint place) {
        return QStringList{u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
    };
    m_session->run(u"xdotool"_s, move(start) + QStringList{u"mousedown"_s, u"1"_s} + move(middle) + move(end) +
                                     QStringList{u"mouseup"_s, u"1"_s});
}

void EditorJourneyTest::click(QPoint at)
{
    m_tessaly->click(m_shown.topLeft() + at);
}

// ── What came of it

bool EditorJourneyTest::waitForNotice(const QString& text) const
{
    return m_session->waitUntil([&] {
        const std::optional<RunningTessaly::Window> toast = m_tessaly->toast();
        return toast && toast->title == text;
    });
}

bool EditorJourneyTest::waitForEntries(qsizetype count)
{
    m_entries = count;
    return m_tessaly->waitForHistory([&](const auto& entries) { return entries.size() == count; });
}

QImage EditorJourneyTest::newestPicture() const
{
    const auto entries = m_tessaly->history();
    return entries && !entries->isEmpty() ? QImage(entries->first().content).convertToFormat(QImage::Format_RGB32)
                                          : QImage();
}

QByteArray EditorJourneyTest::clipboardPicture() const
{
    return m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, pictureTarget, u"-o"_s}).output;
}

// ── Copy

void EditorJourneyTest::drawMarks()
{
    drag({40, 60}, {160, 60}); // the arrow is the tool to begin with
    m_tessaly->press(u"t"_s);
    click({60, 150});
    m_tessaly->type(u"Hello"_s);
    m_tessaly->press(u"Escape"_s);
    m_tessaly->press(u"r"_s);
    drag({200, 40}, {300, 100});
    drag({250, 40}, {270, 50});   // moves the rectangle
    drag({320, 110}, {340, 130}); // and pulls at its corner
    m_tessaly->press(u"4"_s);
    m_tessaly->press(u"c"_s);
    drag({0, 200}, {20, 200});
    for (const auto& key : {u"ctrl+z"_s, u"ctrl+shift+z"_s})
        m_tessaly->press(key);
}

void EditorJourneyTest::copiesWhatWasDrawn()
{
    openEditor();
    drawMarks();
    m_tessaly->press(u"ctrl+c"_s);
    QVERIFY(waitForNotice(u"Copied “image”"_s));
    QVERIFY(m_tessaly->waitForPanel(true));

    const QImage result = QImage::fromData(clipboardPicture());
    QCOMPARE(result.size(), QSize(580, 400));
    QVERIFY(waitForEntries(m_entries + 1));
    QCOMPARE(newestPicture(), result.convertToFormat(QImage::Format_RGB32));

    const QList<std::pair<QRgb, QList<QPoint>>> expected{
        {red, {{39, 60}, {80, 59}, {140, 52}, {140, 67}, {156, 60}, {64, 166}}},
        {blue, {{219, 90}, {280, 49}, {280, 131}, {339, 90}}},
        {ground, {{80, 65}, {163, 60}, {140, 48}, {57, 166}, {250, 40}, {280, 80}, {280, 127}}},
        {frameColor, {{20, 0}, {599, 200}}},
    };
    for (const auto& [color, points] : expected) {
        for (const QPoint point : points)
            QCOMPARE(QColor(result.pixel(point - QPoint(20, 0))), QColor(color)); // the crop's corner
    }
    QVERIFY(extentOf(result, 0xffffffff, {40, 150, 100, 32}).width() > 30); // the letters
}

// ── Save

void EditorJourneyTest::savesOnce()
{
    const QByteArray before = clipboardPicture();
    openEditor();
    m_tessaly->press(u"r"_s);
    drag({100, 100}, {200, 200});
    // The wheel goes on turning over the window that closes.
    m_session->run(u"xdotool"_s, {u"key"_s, u"--delay"_s, u"1"_s, u"ctrl+s"_s, u"ctrl+s"_s, u"click"_s, u"--repeat"_s,
                                  u"60"_s, u"--delay"_s, u"10"_s, u"4"_s});
    QVERIFY(waitForNotice(u"Saved image"_s));
    QVERIFY(m_tessaly->waitForPanel(true));
    QVERIFY(waitForEntries(m_entries + 1));
    QCOMPARE(newestPicture().pixelColor(100, 150), QColor(blue));
    QCOMPARE(clipboardPicture(), before);
}

// ── Paste

void EditorJourneyTest::pastesIntoTheProgramBehindThePanel()
{
    const QString taken = m_session->homePath(u"taken.png"_s);
    // The system's own interpreter: the toolkit's bindings are installed for it alone.
    m_session->start(u"/usr/bin/python3"_s, {QStringLiteral(PICTURE_TAKER), taken});
    QVERIFY(m_session->waitUntil([&] {
        return m_session->run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}).output == "picture taker\n";
    }));
    const quint32 front = m_tessaly->activeWindow();
    openEditor();
    drag({100, 200}, {300, 200});
    m_tessaly->press(u"ctrl+Return"_s);
    QVERIFY(waitForEntries(m_entries + 1));
    QImage picture;
    QVERIFY(m_session->waitUntil([&] { return picture.load(taken); }));
    QCOMPARE(picture.convertToFormat(QImage::Format_RGB32), newestPicture());
    QCOMPARE(picture.pixelColor(200, 200), QColor(blue));
    QVERIFY(waitForEditor(false));
    QVERIFY(!m_tessaly->panel());
    QCOMPARE(m_tessaly->activeWindow(), front);
}

// ── The end

void EditorJourneyTest::keepsTheResultAtTheEnd()
{
    openEditor();
    drag({100, 200}, {300, 250});
    QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    QVERIFY(waitForEntries(m_entries + 1));
    QVERIFY(newestPicture() != picture());
    QVERIFY(m_tessaly->start());
}

QTEST_GUILESS_MAIN(EditorJourneyTest)

#include "EditorJourneyTest.moc"
