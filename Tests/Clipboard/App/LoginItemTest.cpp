#include "LoginItem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Qt::StringLiterals;

class LoginItemTest final : public QObject
{
    Q_OBJECT
private slots:
    void togglesThere_andBack();
    void quotesTheProgram_data();
    void quotesTheProgram();
    void readsWhatAnotherProgramLeft_data();
    void readsWhatAnotherProgramLeft();
    void logsAFailure();
};

namespace {

QByteArray entryIn(const QString& folder)
{
    QFile entry(folder + u"/tessaly.desktop"_s);
    return entry.open(QIODevice::ReadOnly) ? entry.readAll() : QByteArray();
}

} // namespace

void LoginItemTest::togglesThere_andBack()
{
    const QTemporaryDir home;
    const QString folder = home.filePath(u"config/autostart"_s); // made on demand
    LoginItem item(folder, u"/usr/bin/tessaly"_s);
    QVERIFY(!item.isEnabled());
    QVERIFY(item.toggle());
    QVERIFY(item.isEnabled());
    QVERIFY(!item.toggle());
    QVERIFY(!QFile::exists(folder + u"/tessaly.desktop"_s));
}

void LoginItemTest::quotesTheProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("execLine");

    QTest::newRow("plain") << u"/usr/bin/tessaly"_s << QByteArray("Exec=\"/usr/bin/tessaly\"");
    QTest::newRow("blank") << u"/opt/my apps/tessaly"_s << QByteArray("Exec=\"/opt/my apps/tessaly\"");
    QTest::newRow("percent") << u"/opt/100%/tessaly"_s << QByteArray("Exec=\"/opt/100%%/tessaly\"");
    QTest::newRow("dollar") << u"/opt/$x/tessaly"_s << QByteArray("Exec=\"/opt/\\\\$x/tessaly\"");
    QTest::newRow("backslash") << u"/opt/a\\b"_s << QByteArray("Exec=\"/opt/a\\\\\\\\b\"");
}

void LoginItemTest::quotesTheProgram()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, execLine);
    const QTemporaryDir folder;
    LoginItem item(folder.path(), program);
    QVERIFY(item.toggle());
    QVERIFY2(entryIn(folder.path()).split('\n').contains(execLine), entryIn(folder.path()).constData());
}

void LoginItemTest::readsWhatAnotherProgramLeft_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("enabled") << QByteArray("[Desktop Entry]\nExec=tessaly\n") << true;
    QTest::newRow("hidden by the desktop's settings") << QByteArray("[Desktop Entry]\nExec=tessaly\nHidden=true\n")
                                                      << false;
    QTest::newRow("blanks around the sign") << QByteArray("[Desktop Entry]\nExec = tessaly\nHidden = true\n") << false;
    QTest::newRow("switched off by GNOME")
        << QByteArray("[Desktop Entry]\nExec=tessaly\nX-GNOME-Autostart-enabled=false\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void LoginItemTest::readsWhatAnotherProgramLeft()
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

void LoginItemTest::logsAFailure()
{
    const QTemporaryDir folder;
    QVERIFY(QFile(folder.filePath(u"file"_s)).open(QIODevice::WriteOnly));
    LoginItem item(folder.filePath(u"file/autostart"_s), u"/usr/bin/tessaly"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^LoginItem toggle failed: .+"_s));
    QVERIFY(!item.toggle());
}

QTEST_APPLESS_MAIN(LoginItemTest)
#include "LoginItemTest.moc"
