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
    void readsWhatDesktopsWrote();
    void adoptsTheEntryOfItsOldName();
};

void LoginItemTest::togglesBackAndForth()
{
    const QTemporaryDir folder;
    const QString autostart = folder.filePath(u"config/autostart"_s);
    LoginItem item(autostart, u"/my apps/100%/a$b`c\"d\\e"_s);
    QVERIFY(!item.isEnabled());
    QVERIFY(item.toggle());
    QVERIFY(LoginItem(autostart, u"/other"_s).isEnabled());
    QFile file(autostart + u"/com.tessaly.Tessaly.desktop"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray line = "Exec=\"/my apps/100%%/a\\\\$b\\\\`c\\\\\"d\\\\\\\\e\"\n";
    const QByteArray entry = file.readAll();
    QVERIFY2(entry.contains(line), entry.constData());
    QVERIFY(!item.toggle() && !file.exists());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^LoginItem toggle failed: .+"_s));
    QVERIFY(!LoginItem(u"/proc/nowhere"_s, u"/usr/bin/tessaly"_s).toggle());
}

void LoginItemTest::readsWhatDesktopsWrote()
{
    for (const auto& [lines, isEnabled] :
         {std::pair("Exec=tessaly\nHidden = true\n", false), std::pair("Hidden=false\n", true),
          std::pair("X-GNOME-Autostart-enabled=false\r\n", false), std::pair("[Desktop Action x]\nHidden=true\n", true),
          std::pair("# Hidden=true\n", true)}) {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"com.tessaly.Tessaly.desktop"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray("[Desktop Entry]\n") + lines) > 0);
        file.close();
        LoginItem item(folder.path(), u"/usr/bin/tessaly"_s);
        QVERIFY2(item.isEnabled() == isEnabled, lines);
        QCOMPARE(item.toggle(), !isEnabled);
    }
}

void LoginItemTest::adoptsTheEntryOfItsOldName()
{
    for (const auto& [lines, isAdopted, isEnabled] :
         {std::tuple("Name=Tessaly\nExec=/old/tessaly\n", true, true),
          std::tuple("Name=Tessaly\nHidden=true\n", true, false), std::tuple("Name=Another one\n", false, false)}) {
        const QTemporaryDir folder;
        QFile old(folder.filePath(u"tessaly.desktop"_s));
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write(QByteArray("[Desktop Entry]\n") + lines) > 0);
        old.close();
        const LoginItem item(folder.path(), u"/usr/bin/tessaly"_s);
        item.adoptOldEntry();
        item.adoptOldEntry(); // once is enough
        QVERIFY2(item.isEnabled() == isEnabled && old.exists() != isAdopted, lines);
    }
}

QTEST_GUILESS_MAIN(LoginItemTest)
#include "LoginItemTest.moc"
