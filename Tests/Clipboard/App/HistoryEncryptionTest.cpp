// The option as a user has it: with a keyring that is there, locked, missing, or refuses, and with files of either
// form.

#include "HistoryEncryption.h"

#include "HistoryFolder.h"
#include "ImageBlobs.h"
#include "Keyring.h"
#include "Preferences.h"
#include "Rows.h"
#include "Sealing/StoredFile.h"
#include "ServiceNotices.h"
#include "ThumbFiles.h"

#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <utility>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Testing::Keyring;

namespace {

/// What the program has of it.
struct Program
{
    explicit Program(const HistoryFolder& folder, double saveDelay = 0)
        : store(folder.path(), 500, saveDelay)
        , encryption({store, folder.file(u"images"_s), preferences, notices,
                      [this](const auto& /*evicted*/) { isOpened = true; },
                      [this](const QString& problem) { refusal = problem; }})
    {
        QObject::connect(&preferences, &Preferences::changed, &encryption, &HistoryEncryption::follow);
        encryption.start();
    }
    ~Program() { StoredFile::setSealing({}); }
    Q_DISABLE_COPY_MOVE(Program)

    void want(bool isEncrypted)
    {
        const QString value = isEncrypted ? u"true"_s : u"false"_s;
        QCOMPARE(preferences.set(*findPreference(PreferenceKey::encryptHistory), {value}), std::nullopt);
    }
    void record(const QString& text)
    {
        static_cast<void>(store.add(entry(text, store.timeOfNewEntry())));
        store.saveAsync();
    }
    [[nodiscard]] bool isWanted() const { return preferences.flag(PreferenceKey::encryptHistory); }
    [[nodiscard]] QString notice() const { return notices.textOf(u"encryption"_s); }

    Preferences preferences;
    ServiceNotices notices;
    JSONHistoryStore store;
    bool isOpened = false;
    QString refusal;
    HistoryEncryption encryption;
};

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class HistoryEncryptionTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void switchesOnAndOff();
    void goesOnWithWhatWasInterrupted();
    void saysWhyNot();
    void opensWhenTheKeyComes();
    void cleanupTestCase();

private:
    using Change = std::function<void(Keyring& keyring)>;
    void refuses(const char* name, const Change& make, const QString& why);
    void waitsFor(const char* name, const Change& lose, const Change& find);

    QTemporaryDir m_settings;
    QProcess m_bus;
    HistoryFolder m_folder;
};

/// A bus that starts no service.
void HistoryEncryptionTest::initTestCase()
{
    QFile rules(m_settings.filePath(u"bus.conf"_s));
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write(R"(<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context="default">
        <allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>)");
    rules.close();
    m_bus.start(u"dbus-daemon"_s, {u"--config-file="_s + rules.fileName(), u"--nofork"_s, u"--print-address=1"_s});
    QVERIFY(m_bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    QCoreApplication::setApplicationName(u"Tessaly"_s);
}

void HistoryEncryptionTest::init()
{
    QSettings().clear();
    m_folder.renew();
}

void HistoryEncryptionTest::switchesOnAndOff()
{
    Keyring keyring(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    keyring.setThere(true);
    Program program(m_folder, never);
    QImage pixels(900, 20, QImage::Format_RGB32);
    pixels.fill(Qt::red);
    const QString picture = ImageBlobs::write(pixels, m_folder.file(u"images"_s)).value();
    program.record(u"a secret"_s);
    program.store.flush();
    const QByteArray plainPicture = contentOf(picture);
    const QByteArray plainHistory = contentOf(m_folder.path());
    QVERIFY(QFile::exists(ThumbFiles::path(picture)) && plainHistory.contains("a secret"));

    program.want(true);
    QTRY_VERIFY(isSealed(contentOf(m_folder.path())) && isSealed(contentOf(picture)));
    QTRY_VERIFY(!QFile::exists(ThumbFiles::path(picture)));
    QCOMPARE(StoredFile::readAll(picture), plainPicture);
    QVERIFY(!ThumbFiles::read(picture, 100).isNull() && isSealed(contentOf(ThumbFiles::path(picture))));
    program.record(u"another secret"_s);
    QTRY_VERIFY(isSealed(contentOf(m_folder.journal())));
    static_cast<void>(program.store.remove(program.store.items()[0].id));
    program.store.flush();

    program.want(false);
    QTRY_COMPARE(contentOf(m_folder.path()), plainHistory);
    QTRY_COMPARE(contentOf(picture), plainPicture);
    QTRY_VERIFY(!QFile::exists(ThumbFiles::path(picture)));
}

/// Whatever the files are when the program starts, they become what is wanted.
void HistoryEncryptionTest::goesOnWithWhatWasInterrupted()
{
    Keyring keyring(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    keyring.setThere(true);
    QImage pixels(9, 9, QImage::Format_RGB32);
    pixels.fill(Qt::blue);
    QString picture;
    {
        Program program(m_folder);
        program.record(u"kept"_s);
        program.store.flush();
        program.want(true);
        QTRY_VERIFY(isSealed(contentOf(m_folder.path())));
        picture = ImageBlobs::write(pixels, m_folder.file(u"images"_s)).value();
        QVERIFY(isSealed(contentOf(picture)));
    }
    QSettings().setValue(PreferenceKey::encryptHistory, false); // by 'tessaly config', while nothing runs
    const Program program(m_folder);
    QVERIFY(program.store.isLocked());
    QTRY_VERIFY(contentOf(m_folder.path()).contains("kept") && !isSealed(contentOf(picture)));
    QCOMPARE(program.store.items().size(), 1);
}

void HistoryEncryptionTest::refuses(const char* /*name*/, const Change& make, const QString& why)
{
    Keyring keyring(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    make(keyring);
    Program program(m_folder);
    program.record(u"plain"_s);
    program.store.flush();
    program.want(true);
    QTRY_VERIFY2(program.refusal.contains(why), qPrintable(program.refusal));
    QVERIFY(!program.isWanted() && contentOf(m_folder.path()).contains("plain"));
}

void HistoryEncryptionTest::saysWhyNot()
{
    const auto dismisses = [](Keyring& keyring) {
        keyring.setThere(true);
        keyring.isLocked = keyring.isDismissed = true;
    };
    const auto hasNoCollection = [](Keyring& keyring) {
        keyring.setThere(true);
        keyring.hasCollection = false;
    };
    const auto fails = [](Keyring& keyring) {
        keyring.setThere(true);
        keyring.refusal = u"It is full."_s;
    };
    checkRows(this, &HistoryEncryptionTest::refuses,
              {{"there is none", [](Keyring&) {}, u"has no keyring"_s},
               {"its user says no", dismisses, u"was not unlocked"_s},
               {"it has no collection", hasNoCollection, u"takes new keys"_s},
               {"it fails", fails, u"It is full."_s}});
}

void HistoryEncryptionTest::waitsFor(const char* /*name*/, const Change& lose, const Change& find)
{
    m_folder.renew();
    Keyring keyring(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    keyring.setThere(true);
    keyring.key = QByteArray(32, 'k');
    {
        Program program(m_folder);
        program.record(u"before"_s);
        program.want(true);
        QTRY_VERIFY(isSealed(contentOf(m_folder.path())));
    }
    const QByteArray file = contentOf(m_folder.path());
    lose(keyring);
    Program program(m_folder);
    QTRY_VERIFY(!program.notice().isEmpty());
    program.record(u"meanwhile"_s);
    program.store.flush();
    QVERIFY(program.isWanted() && !program.isOpened);
    QCOMPARE(contentOf(m_folder.path()), file);

    find(keyring);
    QTRY_VERIFY(program.isOpened);
    QVERIFY(program.notice().isEmpty());
    QCOMPARE(program.store.items().size(), 2);
    QTRY_VERIFY(contentOf(m_folder.path()) != file);
    QVERIFY(isSealed(contentOf(m_folder.path())));
}

void HistoryEncryptionTest::opensWhenTheKeyComes()
{
    const auto lock = [](Keyring& keyring) { keyring.isLocked = keyring.isDismissed = true; };
    const auto unlock = [](Keyring& keyring) { keyring.sayUnlocked(); };
    const auto leave = [](Keyring& keyring) { keyring.setThere(false); };
    const auto come = [](Keyring& keyring) { keyring.setThere(true); };
    const auto forget = [](Keyring& keyring) { keyring.key.clear(); };
    const auto bringBack = [](Keyring& keyring) {
        keyring.key = QByteArray(32, 'k');
        keyring.sayUnlocked();
    };
    const auto fallSilent = [](Keyring& keyring) { keyring.isSilent = true; };
    const auto speak = [](Keyring& keyring) { keyring.speak(); };
    checkRows(this, &HistoryEncryptionTest::waitsFor,
              {{"locked", lock, unlock},
               {"missing", leave, come},
               {"without the key", forget, bringBack},
               {"slow", fallSilent, speak}});
}

void HistoryEncryptionTest::cleanupTestCase()
{
    m_bus.kill();
    m_bus.waitForFinished();
}

QTEST_GUILESS_MAIN(HistoryEncryptionTest)
#include "HistoryEncryptionTest.moc"
