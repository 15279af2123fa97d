#include "ImageBlobs.h"
#include "EncodedPicture.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <sys/stat.h>
#include <tuple>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray png(QRgb color)
{
    return encoded(filled({8, 8}, color));
}

void makeFile(const QString& path, int ageSeconds)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("x") == 1 && file.flush());
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds), QFile::FileModificationTime));
}

ClipItem item(ClipType type, const QString& path)
{
    return {QUuid::createUuid(), type, path, {}, {}, 0, false};
}

} // namespace

class ImageBlobsTest final : public QObject
{
    Q_OBJECT
private slots:
    void storesPrivatelyUnderTheHash();
    void leavesNothingBehindAFailure();
    void releasesPicturesOnly();
    void sweepsOldOrphansOnly();

private:
    QTemporaryDir m_folder;
};

void ImageBlobsTest::storesPrivatelyUnderTheHash()
{
    const QString dir = m_folder.filePath(u"new/images"_s);
    const std::optional<QString> path = ImageBlobs::write(png(0xff0000), dir);
    QVERIFY(path);
    QFile file(*path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray hash = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
    QCOMPARE(*path, dir + u'/' + QString::fromLatin1(hash) + u".png"_s);
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    const QFile::Permissions user = QFile::ReadUser | QFile::WriteUser;
    QCOMPARE(file.permissions(), owner | user);
    QCOMPARE(QFile::permissions(dir), owner | user | QFile::ExeOwner | QFile::ExeUser);
    QCOMPARE(QDir(dir).entryList(QDir::Files | QDir::Hidden).size(), 1);

    // An equal one shares the file, which is safe from the sweep again.
    const QDateTime old = QDateTime::currentDateTime().addSecs(-3600);
    QVERIFY(file.setFileTime(old, QFile::FileModificationTime));
    file.close();
    const auto number = [&] { // of the file, whatever its name
        struct stat status = {};
        ::stat(QFile::encodeName(*path).constData(), &status);
        return status.st_ino;
    };
    const auto before = number();
    QCOMPARE(ImageBlobs::write(png(0xff0000), dir), path);
    QCOMPARE(number(), before);
    QVERIFY(QFileInfo(*path).lastModified() > old.addSecs(3000));
    QVERIFY(ImageBlobs::write(png(0xff0001), dir) != path);
}

void ImageBlobsTest::leavesNothingBehindAFailure()
{
    const QString dir = m_folder.filePath(u"failed"_s);
    QCOMPARE(ImageBlobs::write("text", dir), std::nullopt);
    QCOMPARE(ImageBlobs::write(png(0xff).first(60), dir), std::nullopt);
    QVERIFY(QDir(dir).entryList(QDir::Files | QDir::Hidden).isEmpty());
    QCOMPARE(ImageBlobs::write(png(0xff), u"/proc/nowhere/images"_s), std::nullopt);
}

void ImageBlobsTest::releasesPicturesOnly()
{
    const QString picture = m_folder.filePath(u"a.png"_s);
    const QString file = m_folder.filePath(u"b.png"_s);
    makeFile(picture, 0);
    makeFile(file, 0);
    const QString pipe = m_folder.filePath(u"c.png"_s); // stands for any device
    QCOMPARE(::mkfifo(qPrintable(pipe), S_IRUSR), 0);
    ImageBlobs::release({item(ClipType::image, picture), item(ClipType::file, file), item(ClipType::image, pipe),
                         item(ClipType::image, u"/nowhere.png"_s), item(ClipType::text, file)});
    QVERIFY(!QFile::exists(picture));
    QVERIFY(QFile::exists(file));
    QVERIFY(QFile::exists(pipe));
}

void ImageBlobsTest::sweepsOldOrphansOnly()
{
    const std::tuple<QString, int, bool> files[] = {
        {u"orphan.png"_s, 61, true},   {u"incoming-aB3dE6.png"_s, 3600, true}, // which a crash left
        {u"young.png"_s, 10, false},   {u"kept.png"_s, 3600, false},
        {u"notes.txt"_s, 3600, false}, {u"photo.PNG"_s, 3600, false},
    };
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(u"thumbnails"_s));
    for (const auto& [name, age, isSwept] : files) {
        makeFile(dir.filePath(name), age);
        makeFile(dir.filePath(u"thumbnails/"_s + name), age);
    }
    QThreadPool pool;
    // Only the name counts: the folder may have moved with the user's home.
    ImageBlobs::sweepOrphans(dir.path(), {item(ClipType::image, u"/old/home/images/kept.png"_s)}, pool);
    QVERIFY(pool.waitForDone());
    for (const auto& [name, age, isSwept] : files) {
        QVERIFY2(QFile::exists(dir.filePath(name)) != isSwept, qPrintable(name));
        QVERIFY2(QFile::exists(dir.filePath(u"thumbnails/"_s + name)) != isSwept, qPrintable(name));
    }
}

QTEST_GUILESS_MAIN(ImageBlobsTest)
#include "ImageBlobsTest.moc"
