#include "LoginItem.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class LoginItemTest final : public QObject
{
    Q_OBJECT
private slots:
    void togglesBackAndForth();
    void readsWhatDesktopsWrote_data();
    void readsWhatDesktopsWrote();
    void quotesTheProgram_data();
    void quotesTheProgram();
    void logsAFailure();
};

void LoginItemTest::togglesBackAndForth()
{
    const QTemporaryDir folder;
    LoginItem item(folder.filePath(u"config/autostart"_s), u"/usr/bin/tessaly"_s);
    QVERIFY(!item.isEnabled());
    QVERIFY(item.toggle());
    QVERIFY(LoginItem(folder.filePath(u"config/autostart"_s), u"/other"_s).isEnabled());
    QVERIFY(!item.toggle());
    QVERIFY(!QFile::exists(folder.filePath(u"config/autostart/tessaly.desktop"_s)));
}

void LoginItemTest::readsWhatDesktopsWrote_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("plain") << QByteArray("[Desktop Entry]\nExec=tessaly\n") << true;
    QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nExec=tessaly\nHidden = true\n") << false;
    QTest::newRow("not hidden") << QByteArray("[Desktop Entry]\nHidden=false\n") << true;
    QTest::newRow("off in GNOME") << QByteArray("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\r\n") << false;
    QTest::newRow("hidden elsewhere") << QByteArray("[Desktop Entry]\n[Desktop Action x]\nHidden=true\n") << true;
    QTest::newRow("a comment") << QByteArray("[Desktop Entry]\n# Hidden=true\n") << true;
}

void LoginItemTest::readsWhatDesktopsWrote()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, enabled);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"tessaly.desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(entry) == entry.size());
    file.close();
    LoginItem item(folder.path(), u"/usr/bin/tessaly"_s);
    QCOMPARE(item.isEnabled(), enabled);
    QCOMPARE(item.toggle(), !enabled);
}

void LoginItemTest::quotesTheProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("plain") << u"/usr/bin/tessaly"_s << QByteArray("Exec=\"/usr/bin/tessaly\"\n");
    QTest::newRow("blank") << u"/opt/my apps/tessaly"_s << QByteArray("Exec=\"/opt/my apps/tessaly\"\n");
    QTest::newRow("percent") << u"/a%1/t"_s << QByteArray("Exec=\"/a%%1/t\"\n");
    QTest::newRow("reserved") << u"/a$b`c\"d"_s << QByteArray("Exec=\"/a\\\\$b\\\\`c\\\\\"d\"\n");
    QTest::newRow("backslash") << u"/a\\b"_s << QByteArray("Exec=\"/a\\\\\\\\b\"\n");
}

void LoginItemTest::quotesTheProgram()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, line);
    const QTemporaryDir folder;
    QVERIFY(LoginItem(folder.path(), program).toggle());
    QFile file(folder.filePath(u"tessaly.desktop"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray entry = file.readAll();
    QVERIFY2(entry.contains(line), entry.constData());
}

void LoginItemTest::logsAFailure()
{
    LoginItem item(u"/proc/nowhere"_s, u"/usr/bin/tessaly"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^LoginItem toggle failed: .+"_s));
    QVERIFY(!item.toggle());
}

QTEST_GUILESS_MAIN(LoginItemTest)
#include "LoginItemTest.moc"
