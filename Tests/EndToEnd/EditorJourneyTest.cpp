#include "EncodedPicture.h"
#include "JourneyTest.h"

#include <QPainter>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

namespace {

constexpr QSize pictureSize(600, 400);
constexpr QRgb frameColor = 0xff12a47b; // nothing else on the screen has it: where it is seen, the picture is
constexpr QRgb ground = 0xffd6e2c8;
constexpr QRgb red = 0xffff3b30;
constexpr QRgb blue = 0xff007aff;

QImage picture()
{
    QImage image = filled(pictureSize, frameColor);
    QPainter(&image).fillRect(image.rect().adjusted(2, 2, -2, -2), ground);
    return image;
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
class EditorJourneyTest final : public JourneyTest
{
    Q_OBJECT
public:
    EditorJourneyTest()
        : JourneyTest({}, Sessions::one)
    {
    }

private slots:
    void copiesWhatWasDrawn();
    void savesOnce();
    void pastesIntoTheProgramBehindThePanel();
    void keepsTheResultAtTheEnd();

private:
    void prepare() override { listen(); }
    void arrive() override;
    void leave() override;
    void openEditor();
    [[nodiscard]] QImage look();       // at the whole screen
    void draw(QPoint from, QPoint to); // places of the picture
    void point(QPoint at);
    void drawMarks();
    [[nodiscard]] QImage newestPicture();

    QRect m_shown; // where on the screen the picture is
    qsizetype m_entries = 0;
};

/// Each function begins with the plain picture as the newest entry.
void EditorJourneyTest::arrive()
{
    copy(encoded(picture()), asPicture);
    m_entries = std::max<qsizetype>(m_entries, 1);
}

void EditorJourneyTest::leave()
{
    press("Escape");
    expectNoPanel();
}

/// Opens the newest entry, from the panel or from behind it, and finds its picture on the screen.
void EditorJourneyTest::openEditor()
{
    if (!tessaly().panel())
        press("super+shift+v");
    expectPanel();
    press("ctrl+e");
    expect("the picture in the editor with the keyboard", [this] {
        const auto editor = tessaly().editor();
        if (!editor || tessaly().activeWindow() != editor->id)
            return false;
        const QImage screen = look();
        m_shown = extentOf(screen, frameColor, editor->geometry & screen.rect());
        return m_shown.size() == pictureSize; // before the first frame it shows what was there
    });
}

QImage EditorJourneyTest::look()
{
    const QString file = session().homePath(u"screen.png"_s);
    return session().screenshot(file) ? QImage(file).convertToFormat(QImage::Format_RGB32) : QImage();
}

void EditorJourneyTest::draw(QPoint from, QPoint to)
{
    const QPoint corner = m_shown.topLeft();
    if (!hasFailed())
        desktop().drag({corner + from, corner + (from + to) / 2, corner + to});
}

void EditorJourneyTest::point(QPoint at)
{
    click(m_shown.topLeft() + at);
}

void EditorJourneyTest::drawMarks()
{
    draw({40, 60}, {160, 60}); // the arrow is the tool to begin with
    press("t");
    point({60, 150});
    type("Hello");
    press("Escape r");
    draw({200, 40}, {300, 100});
    draw({250, 40}, {270, 50});   // moves the rectangle
    draw({320, 110}, {340, 130}); // and pulls at its corner
    press("4 c");
    draw({0, 200}, {20, 200});
    press("ctrl+z ctrl+shift+z");
}

QImage EditorJourneyTest::newestPicture()
{
    return QImage(newest().content).convertToFormat(QImage::Format_RGB32);
}

void EditorJourneyTest::copiesWhatWasDrawn()
{
    openEditor();
    drawMarks();
    press("ctrl+c");
    expectNotice("Copied “image”");
    expectPanel();
    const QImage result = QImage::fromData(pasted(asPicture));
    QCOMPARE(result.size(), QSize(580, 400));
    expectEntries(++m_entries);
    QCOMPARE(newestPicture(), result.convertToFormat(QImage::Format_RGB32));

    const QList<std::pair<QRgb, QList<QPoint>>> expected{
        {red, {{39, 60}, {80, 59}, {140, 52}, {140, 67}, {156, 60}, {64, 166}}},
        {blue, {{219, 90}, {280, 49}, {280, 131}, {339, 90}}},
        {ground, {{80, 65}, {163, 60}, {140, 48}, {57, 166}, {250, 40}, {280, 80}, {280, 127}}},
        {frameColor, {{20, 0}, {599, 200}}},
    };
    for (const auto& [color, points] : expected) {
        for (const QPoint place : points)
            QCOMPARE(QColor(result.pixel(place - QPoint(20, 0))), QColor(color)); // the crop's corner
    }
    QVERIFY(extentOf(result, 0xffffffff, {40, 150, 100, 32}).width() > 30); // the letters
}

void EditorJourneyTest::savesOnce()
{
    const QByteArray before = pasted(asPicture);
    openEditor();
    press("r");
    draw({100, 100}, {200, 200});
    press("ctrl+s ctrl+s");
    desktop().turnWheel(60); // over the window that closes
    expectNotice("Saved image");
    expectPanel();
    expectEntries(++m_entries);
    QCOMPARE(newestPicture().pixelColor(100, 150), QColor(blue));
    QCOMPARE(pasted(asPicture), before);
}

void EditorJourneyTest::pastesIntoTheProgramBehindThePanel()
{
    const QString taken = session().homePath(u"taken.png"_s);
    // The system's own interpreter: the toolkit's bindings are installed for it alone.
    session().start(u"/usr/bin/python3"_s, {QStringLiteral(PICTURE_TAKER), taken});
    expectFront("picture taker");
    openEditor();
    draw({100, 200}, {300, 200});
    press("ctrl+Return");
    expectEntries(++m_entries);
    QImage result;
    expect("the picture in the program behind", [&] { return result.load(taken); });
    QCOMPARE(result.convertToFormat(QImage::Format_RGB32), newestPicture());
    QCOMPARE(result.pixelColor(200, 200), QColor(blue));
    expectNoPanel();
    expectFront("picture taker");
}

void EditorJourneyTest::keepsTheResultAtTheEnd()
{
    openEditor();
    draw({100, 100}, {300, 150});
    draw({100, 200}, {300, 250});
    // Once the second is seen, the first is done.
    const QRect second(100, 200, 200, 50);
    expect("the mark in the picture", [&] { return look().copy(m_shown).copy(second) != picture().copy(second); });
    endTessaly();
    expectEntries(++m_entries);
    QVERIFY(newestPicture() != picture());
    startTessaly();
}

QTEST_GUILESS_MAIN(EditorJourneyTest)
#include "EditorJourneyTest.moc"
