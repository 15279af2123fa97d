#include "ClipItemTexts.h"
#include "Rows.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;

class ClipItemTextsTest final : public QObject
{
    Q_OBJECT
private slots:
    void titlesRows();
    void titlesPicturesByTheirSize();
    void speaksAndSaysTheAge();
};

void ClipItemTextsTest::titlesRows()
{
    const QString link = u"https://A.example/"_s + QString(250, u'x');
    const QString family = u"👩‍👩‍👧"_s;
    checkRows(
        +[](const char*, ClipType type, const QString& content, const QString& title) {
            QCOMPARE(rowTitle({QUuid(), type, content, {}, {}, 0, false}), title);
        },
        {
            {"text, line feeds", ClipType::text, u"a\nb\r\nc"_s, u"a b\r c"_s},
            {"text, characters not code units", ClipType::text, family.repeated(201), family.repeated(200)},
            {"link unchanged", ClipType::link, link, link},
            {"code, first line", ClipType::code, u"int a;\nint b;"_s, u"int a;"_s},
            {"code, Windows line ends", ClipType::code, u"a;\r\nb;\r\n"_s, u"a;\r\nb;\r\n"_s},
            {"missing picture", ClipType::image, u"/nowhere.png"_s, u"Image"_s},
        });
}

void ClipItemTextsTest::titlesPicturesByTheirSize()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"p.png"_s);
    QVERIFY(QImage(1920, 3, QImage::Format_Mono).save(path));
    const ClipItem item{QUuid(), ClipType::image, path, {}, {}, 0, false};
    QCOMPARE(rowTitle(item), u"1,920 × 3"_s);
    QVERIFY(QFile::remove(path));
    QCOMPARE(rowTitle(item), u"1,920 × 3"_s); // remembered
}

void ClipItemTextsTest::speaksAndSaysTheAge()
{
    const ClipItem item{QUuid(), ClipType::text, u"hello world"_s, u"Notes"_s, {}, 1000, true};
    QCOMPARE(accessibilityLabel(item, 1300), u"Text, hello world, from Notes, copied 5m, pinned"_s);
    const ClipItem several{QUuid(), ClipType::file, u"/a/b%n"_s, {}, {}, 1000, false, 5};
    QCOMPARE(accessibilityLabel(several, 1300), u"Files, b%n and 5 more file(s), copied 5m"_s);
    QCOMPARE(ageLabel(item, qQNaN()) + ageLabel(item, 0), u"just nowjust now"_s);
    QCOMPARE(ageLabel(item, 1000 + 3599.9), u"59m ago"_s);
    QCOMPARE(ageLabel(item, 1000 + 86399.9), u"23h ago"_s);
}

QTEST_GUILESS_MAIN(ClipItemTextsTest)
#include "ClipItemTextsTest.moc"
