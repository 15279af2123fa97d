#include "LinkTitle.h"
#include "LoopbackServer.h"
#include "PageFetcher.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Reply = LoopbackServer::Reply;
using Ending = LoopbackServer::Reply::Ending;

namespace {

/// For what comes; far more than any test needs.
constexpr auto amply = 30s;
/// For what does not.
constexpr auto briefly = 200ms;

const QByteArray plainPage = "<html><head><title>Plain</title></head><body>text</body></html>";

/// `page` as a server sends it that packs without being asked, with 16 MiB more once unpacked.
QByteArray packed(const QByteArray& page)
{
    const qsizetype lengthField = 4; // Qt's own
    return qCompress(page + QByteArray(qsizetype{16} * 1024 * 1024, ' ')).mid(lengthField);
}

} // namespace

class LinkTitleTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void endsAsItShould_data();
    void endsAsItShould();
    void givesUpInTime_data();
    void givesUpInTime();
    void keepsAndTellsNothing();
    void followsRedirectsSoFar();
    void readsTheBeginningOnly();
    void staysOnTheWeb_data();
    void staysOnTheWeb();
    void trustsTheSystemsAuthoritiesOnly();

private:
    LoopbackServer m_server;
};

void LinkTitleTest::initTestCase()
{
    const QByteArray html = "Content-Type: text/html\r\n";
    const QByteArray big(qsizetype{10} * 1024 * 1024, 'x');
    m_server.answer("/plain", {.body = plainPage});
    m_server.answer("/untyped", {.body = plainPage, .headers = {}});
    m_server.answer("/xhtml", {.body = plainPage, .headers = "Content-Type: Application/XHTML+XML; charset=utf-8\r\n"});
    m_server.answer("/identity", {.body = plainPage, .headers = html + "Content-Encoding: identity\r\n"});
    m_server.answer("/og", {.body = "<title>T</title><meta property=og:title content='&quot;O&quot;\n og'><p>"});
    m_server.answer("/latin1",
                    {.body = "<title>caf\xe9</title>", .headers = "Content-Type: text/html; charset=latin1\r\n"});
    m_server.answer("/wrong-charset", {.body = "<title>caf\xe9 noir</title>"});
    m_server.answer("/brackets", {.body = "<title>[a](b) ]] [c</title>"});
    m_server.answer("/big", {.body = "<title>Big</title>" + big});
    m_server.answer("/late", {.body = "<p>" + big.first(2 * maxPageBytes) + "<title>Late</title>"});
    m_server.answer("/cut", {.body = "<title>" + big});
    m_server.answer("/endless", {.body = plainPage, .ending = Ending::Hang});
    m_server.answer("/pieces", {.body = plainPage, .ending = Ending::Hang, .pieceBytes = 3, .pause = 1ms});

    m_server.answer("/no-title", {.body = "<html><body><h1>Title</h1></body></html>"});
    m_server.answer("/empty", {});
    m_server.answer("/short", {.body = plainPage.first(20), .headers = html + "Content-Length: 9000\r\n"});
    m_server.answer("/picture", {.body = plainPage, .headers = "Content-Type: image/png\r\n"});
    m_server.answer("/bytes", {.body = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff"_ba, .headers = {}});
    m_server.answer("/bomb", {.body = packed(plainPage), .headers = html + "Content-Encoding: deflate\r\n"});
    m_server.answer("/gone", {.body = plainPage, .status = "404 Not Found"});
    m_server.answer("/broken", {.body = plainPage, .status = "500 Oops"});
    m_server.answer("/locked",
                    {.body = plainPage, .status = "401 No", .headers = html + "WWW-Authenticate: Basic realm=x\r\n"});
    m_server.answer("/no-http", {.body = plainPage, .status = "\r\n\r\n", .headers = {}});

    for (const QByteArray status : {"301 A", "302 B", "303 C", "307 D", "308 E"})
        m_server.answer("/moved-" + status.first(3), LoopbackServer::redirect("/plain", status));
    m_server.answer("/dir/relative", LoopbackServer::redirect("../brackets?#part"));
    m_server.answer("/brackets?", {.body = "<title>With query</title>"});
    m_server.answer("/twice", LoopbackServer::redirect(m_server.url("/moved-301").toEncoded()));
    m_server.answer("/nowhere", LoopbackServer::redirect({}));
    m_server.answer("/to-file", LoopbackServer::redirect("file:///etc/hostname"));
    m_server.answer("/to-data", LoopbackServer::redirect("data:text/html,<title>Data</title>"));
}

void LinkTitleTest::endsAsItShould_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("title"); // null: none
    const auto row = [](const char* path, const QString& title) {
        QTest::newRow(path + 1) << QByteArray(path) << title;
    };
    for (const char* path : {"/plain", "/untyped", "/xhtml", "/identity", "/endless", "/pieces", "/moved-301",
                             "/moved-302", "/moved-303", "/moved-307", "/moved-308", "/twice"})
        row(path, u"Plain"_s);
    row("/og", u"\"O\" og"_s);
    row("/latin1", u"café"_s);
    row("/wrong-charset", u"caf\uFFFD noir"_s);
    row("/brackets", u"[a](b) ]] [c"_s);
    row("/big", u"Big"_s);
    row("/dir/relative", u"With query"_s);
    for (const char* path : {"/late", "/cut", "/no-title", "/empty", "/short", "/picture", "/bytes", "/bomb", "/gone",
                             "/broken", "/locked", "/no-http", "/nowhere", "/to-file", "/to-data", "/never-heard-of"})
        row(path, {});
}

void LinkTitleTest::endsAsItShould()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, title);
    const std::optional<QString> found = linkTitle(m_server.url(path), amply);
    QCOMPARE(found.value_or(QString()), title);
    QCOMPARE(found.has_value(), !title.isNull());
}

void LinkTitleTest::givesUpInTime_data()
{
    QTest::addColumn<QByteArray>("path");
    LoopbackServer& server = m_server;
    server.hang("/mute");
    server.answer("/headers-only", {.body = {}, .ending = Ending::Hang});
    server.answer("/drip", {.body = QByteArray(100000, ' ') + plainPage, .pieceBytes = 1, .pause = 5ms});
    server.answer("/to-mute", LoopbackServer::redirect("/mute"));
    for (const char* path : {"/mute", "/headers-only", "/drip", "/to-mute"})
        QTest::newRow(path + 1) << QByteArray(path);
}

void LinkTitleTest::givesUpInTime()
{
    QFETCH(QByteArray, path);
    QCOMPARE(linkTitle(m_server.url(path), briefly), std::nullopt);
}

void LinkTitleTest::keepsAndTellsNothing()
{
    LoopbackServer server;
    QUrl target = server.url("/locked");
    target.setUserInfo(u"name:secret"_s);
    Reply reply = LoopbackServer::redirect(target.toEncoded());
    reply.headers += "Set-Cookie: id=1; Path=/\r\n";
    server.answer("/", reply);
    server.answer("/locked", {.body = {}, .status = "401 No", .headers = "WWW-Authenticate: Basic realm=x\r\n"});
    QUrl link = server.url("/");
    link.setUserInfo(u"name:secret"_s);
    QCOMPARE(linkTitle(link, amply), std::nullopt);

    QCOMPARE(server.requests().size(), 2);
    for (const LoopbackServer::Request& request : server.requests()) {
        const QByteArray head = request.head.toLower();
        QVERIFY2(head.contains("\r\nuser-agent: tessaly/") && head.contains("\r\naccept-encoding: identity\r\n"),
                 head.constData());
        for (const char* secret : {"cookie", "authorization", "referer", "secret", "name"})
            QVERIFY2(!head.contains(secret), head.constData());
    }
}

void LinkTitleTest::followsRedirectsSoFar()
{
    LoopbackServer server;
    server.answer("/loop", LoopbackServer::redirect("/loop"));
    QCOMPARE(linkTitle(server.url("/loop"), amply), std::nullopt);
    QCOMPARE(server.requests().size(), 1 + maxRedirects);
}

void LinkTitleTest::readsTheBeginningOnly()
{
    const std::optional<Page> page = fetchPage(m_server.url("/big"), amply, [](const Page&) { return false; });
    QVERIFY(page);
    QCOMPARE(page->bytes.size(), maxPageBytes);
    QVERIFY(page->bytes.startsWith("<title>Big</title>xxx"));
}

void LinkTitleTest::staysOnTheWeb_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QByteArray>("location");
    QTest::addColumn<QString>("target"); // null: none
    const QString none;
    QTest::newRow("to https") << u"http://a.b/c"_s << QByteArray("https://a.b/c") << u"https://a.b/c"_s;
    QTest::newRow("from https") << u"https://a.b/c"_s << QByteArray("http://a.b/c") << none;
    QTest::newRow("same protocol") << u"https://a.b/c"_s << QByteArray("//d.e/f?g=%C3%A4")
                                   << u"https://d.e/f?g=%C3%A4"_s;
    QTest::newRow("bare UTF-8") << u"http://a.b/c/"_s << QByteArray(" d\xc3\xa4 e ") << u"http://a.b/c/d%C3%A4%20e"_s;
    QTest::newRow("without a host") << u"http://a.b/c"_s << QByteArray("http:///d") << none;
    QTest::newRow("to ftp") << u"http://a.b/c"_s << QByteArray("ftp://a.b/c") << none;
    QTest::newRow("to a script") << u"http://a.b/c"_s << QByteArray("javascript:alert(1)") << none;
    QTest::newRow("nonsense") << u"http://a.b/c"_s << QByteArray("http://[::1") << none;
}

void LinkTitleTest::staysOnTheWeb()
{
    QFETCH(QString, from);
    QFETCH(QByteArray, location);
    QFETCH(QString, target);
    const std::optional<QUrl> found = redirectTarget(QUrl(from), location);
    QCOMPARE(found.has_value(), !target.isNull());
    QCOMPARE(found.value_or(QUrl()).toString(QUrl::FullyEncoded), target);
    QCOMPARE(linkTitle(QUrl::fromEncoded("file:///etc/passwd"), amply), std::nullopt);
}

void LinkTitleTest::trustsTheSystemsAuthoritiesOnly()
{
    const QTemporaryDir folder;
    const QString keyPath = folder.filePath(u"key"_s);
    const QString certificatePath = folder.filePath(u"certificate"_s);
    QProcess openssl;
    openssl.start(
        u"openssl"_s,
        u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=Loopback -addext "
        "subjectAltName=IP:127.0.0.1 -keyout %1 -out %2"_s.arg(keyPath, certificatePath)
            .split(u' '));
    QVERIFY2(openssl.waitForFinished() && openssl.exitCode() == 0, openssl.readAllStandardError().constData());
    QFile keyFile(keyPath);
    QVERIFY(keyFile.open(QIODevice::ReadOnly));
    const QList<QSslCertificate> certificates = QSslCertificate::fromPath(certificatePath);
    QSslConfiguration encryption = QSslConfiguration::defaultConfiguration();
    const QSslConfiguration systems = encryption;
    encryption.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
    encryption.setLocalCertificateChain(certificates);
    LoopbackServer server(encryption);
    server.answer("/", {.body = plainPage});

    QCOMPARE(linkTitle(server.url("/"), amply), std::nullopt);

    QSslConfiguration trusting = systems;
    trusting.addCaCertificates(certificates);
    QSslConfiguration::setDefaultConfiguration(trusting);
    const std::optional<QString> title = linkTitle(server.url("/"), amply);
    QSslConfiguration::setDefaultConfiguration(systems);
    QCOMPARE(title, std::optional(u"Plain"_s));
}

QTEST_GUILESS_MAIN(LinkTitleTest)
#include "LinkTitleTest.moc"
