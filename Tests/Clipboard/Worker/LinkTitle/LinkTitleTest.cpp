#include "LinkTitle.h"
#include "LoopbackServer.h"
#include "PageFetcher.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

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
    void endsAsItShould();
    void givesUpInTime();
    void keepsAndTellsNothing();
    void goesOnlySoFar();
    void staysOnTheWeb();
    void trustsTheSystemsAuthoritiesOnly();

private:
    void endsWith(const QByteArray& path, const QString& title, const Reply& reply);

    LoopbackServer m_server;
};

/// A null title is none.
void LinkTitleTest::endsWith(const QByteArray& path, const QString& title, const Reply& reply)
{
    m_server.answer(path, reply);
    const std::optional<QString> found = linkTitle(m_server.url(path), amply);
    QVERIFY2(found.value_or(QString()) == title && found.has_value() == !title.isNull(), path.constData());
}

void LinkTitleTest::endsAsItShould()
{
    const QByteArray html = "Content-Type: text/html\r\n";
    const QByteArray big(qsizetype{10} * 1024 * 1024, 'x');
    const QString plain = u"Plain"_s;
    endsWith("/plain", plain, {.body = plainPage});
    endsWith("/untyped", plain, {.body = plainPage, .headers = {}});
    endsWith("/xhtml", plain, {.body = plainPage, .headers = "Content-Type: Application/XHTML+XML; charset=utf-8\r\n"});
    endsWith("/identity", plain, {.body = plainPage, .headers = html + "Content-Encoding: identity\r\n"});
    endsWith("/latin1", u"café"_s,
             {.body = "<title>caf\xe9</title>", .headers = "Content-Type: text/html; charset=latin1\r\n"});
    endsWith("/big", u"Big"_s, {.body = "<title>Big</title>" + big});
    endsWith("/late", {}, {.body = "<p>" + big.first(2 * maxPageBytes) + "<title>Late</title>"});
    endsWith("/cut", {}, {.body = "<title>" + big});
    endsWith("/pieces", plain, {.body = plainPage, .ending = Ending::Hang, .pieceBytes = 3, .pause = 1ms});

    endsWith("/empty", {}, {});
    endsWith("/short", {}, {.body = plainPage.first(20), .headers = html + "Content-Length: 9000\r\n"});
    endsWith("/picture", {}, {.body = plainPage, .headers = "Content-Type: image/png\r\n"});
    endsWith("/bomb", {}, {.body = packed(plainPage), .headers = html + "Content-Encoding: deflate\r\n"});
    endsWith("/gone", {}, {.body = plainPage, .status = "404 Not Found"});
    endsWith("/locked", {},
             {.body = plainPage, .status = "401 No", .headers = html + "WWW-Authenticate: Basic realm=x\r\n"});
    endsWith("/no-http", {}, {.body = plainPage, .status = "\r\n\r\n", .headers = {}});

    for (const QByteArray status : {"301 A", "302 B", "303 C", "307 D", "308 E"})
        endsWith("/moved-" + status.first(3), plain, LoopbackServer::redirect("/plain", status));
    m_server.answer("/brackets?", {.body = "<title>With query</title>"});
    endsWith("/dir/relative", u"With query"_s, LoopbackServer::redirect("../brackets?#part"));
    endsWith("/twice", plain, LoopbackServer::redirect(m_server.url("/moved-301").toEncoded()));
    endsWith("/nowhere", {}, LoopbackServer::redirect({}));
    endsWith("/to-file", {}, LoopbackServer::redirect("file:///etc/hostname"));
}

void LinkTitleTest::givesUpInTime()
{
    m_server.hang("/mute");
    m_server.answer("/headers-only", {.body = {}, .ending = Ending::Hang});
    m_server.answer("/drip", {.body = QByteArray(100000, ' ') + plainPage, .pieceBytes = 1, .pause = 5ms});
    m_server.answer("/to-mute", LoopbackServer::redirect("/mute"));
    for (const char* path : {"/mute", "/headers-only", "/drip", "/to-mute"})
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
    for (const QByteArray& request : server.requests()) {
        const QByteArray head = request.toLower();
        QVERIFY2(head.contains("\r\nuser-agent: tessaly/") && head.contains("\r\naccept-encoding: identity\r\n"),
                 head.constData());
        for (const char* secret : {"cookie", "authorization", "referer", "secret", "name"})
            QVERIFY2(!head.contains(secret), head.constData());
    }
}

void LinkTitleTest::goesOnlySoFar()
{
    LoopbackServer server;
    server.answer("/loop", LoopbackServer::redirect("/loop"));
    QCOMPARE(linkTitle(server.url("/loop"), amply), std::nullopt);
    QCOMPARE(server.requests().size(), 1 + maxRedirects);

    server.answer("/big", {.body = QByteArray(2 * maxPageBytes, 'x')});
    const std::optional<Page> page = fetchPage(server.url("/big"), amply, [](const Page&) { return false; });
    QVERIFY(page && page->bytes == QByteArray(maxPageBytes, 'x'));
}

void LinkTitleTest::staysOnTheWeb()
{
    const QByteArray none;
    const std::tuple<QByteArray, QByteArray, QByteArray> redirects[] = {
        {"http://a.b/c", "https://a.b/c", "https://a.b/c"},
        {"https://a.b/c", "http://a.b/c", none},
        {"https://a.b/c", "//d.e/f?g=%C3%A4", "https://d.e/f?g=%C3%A4"},
        {"http://a.b/c/", " d\xc3\xa4 e ", "http://a.b/c/d%C3%A4%20e"},
        {"http://a.b/c", "http:///d", none},
        {"http://a.b/c", "ftp://a.b/c", none},
        {"http://a.b/c", "http://[::1", none},
    };
    for (const auto& [from, location, target] : redirects)
        QCOMPARE(redirectTarget(QUrl::fromEncoded(from), location).value_or(QUrl()).toEncoded(), target);
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
    QVERIFY2(openssl.waitForFinished(-1) && openssl.exitCode() == 0, openssl.readAllStandardError().constData());
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
