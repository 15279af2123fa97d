#include "PageFetcher.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <algorithm>
#include <array>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

/// So much waits unread at most, whatever a server sends.
constexpr qint64 readBufferBytes = qint64{64} * 1024;

enum class Outcome { Failed, Fetched };

bool isOnTheWeb(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

bool isHtml(const QByteArray& contentType)
{
    const QByteArray type = contentType.first(std::max<qsizetype>(0, (contentType + ';').indexOf(';'))).trimmed();
    const QByteArray lower = type.toLower();
    return lower.isEmpty() || lower == "text/html" || lower == "application/xhtml+xml";
}

bool isRedirect(int status)
{
    constexpr std::array redirects{301, 302, 303, 307, 308};
    return std::ranges::find(redirects, status) != redirects.end();
}

/// Whether the head, or a title that stands outside it, may end in `bytes`.
bool mayEndHead(const QByteArray& bytes)
{
    const QByteArray lower = bytes.toLower();
    return lower.contains("</head") || lower.contains("<body") || lower.contains("</title");
}

/// One page's way here.
class PageFetcher final : public QObject
{
public:
    explicit PageFetcher(const std::function<bool(const Page&)>& isEnough)
        : m_isEnough(isEnough)
    {
    }

    [[nodiscard]] std::optional<Page> fetch(const QUrl& link, std::chrono::milliseconds limit)
    {
        QTimer::singleShot(limit, this, [this] { end(Outcome::Failed); });
        request(link);
        return m_waiting.exec() == int(Outcome::Fetched) ? std::optional(m_page) : std::nullopt;
    }

private:
    void request(const QUrl& url);
    void judgeHeaders();
    void readOn();
    void takeRest();
    void follow(const QByteArray& location);
    void end(Outcome outcome);
    void dropReply();

    QNetworkAccessManager m_manager;
    QEventLoop m_waiting;
    const std::function<bool(const Page&)>& m_isEnough;
    QNetworkReply* m_reply = nullptr;
    Page m_page;
    int m_redirects = 0;
};

void PageFetcher::request(const QUrl& url)
{
    QNetworkRequest request(url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
    request.setRawHeader("User-Agent", "Tessaly/" TESSALY_VERSION);
    request.setRawHeader("Accept", "text/html, application/xhtml+xml");
    // Said by ourselves, it also keeps Qt from unpacking what comes packed all the same.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // One request has no use for it, and it is one more parser of foreign bytes.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);

    m_reply = m_manager.get(request);
    m_reply->setReadBufferSize(readBufferBytes);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &PageFetcher::judgeHeaders);
    connect(m_reply, &QNetworkReply::readyRead, this, &PageFetcher::readOn);
    connect(m_reply, &QNetworkReply::finished, this, &PageFetcher::takeRest);
}

void PageFetcher::judgeHeaders()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    m_page.contentType = m_reply->rawHeader("Content-Type");
    if (isRedirect(status))
        follow(m_reply->rawHeader("Location"));
    else if (status < 200 || status > 299 || !isHtml(m_page.contentType) ||
             !(encoding.isEmpty() || encoding == "identity"))
        end(Outcome::Failed);
}

void PageFetcher::readOn()
{
    const qsizetype before = m_page.bytes.size();
    m_page.bytes += m_reply->read(maxPageBytes - before);
    // One of the marks may have come in two parts.
    const qsizetype unseen = std::max<qsizetype>(0, before - qsizetype(std::size("</title")));
    if (m_page.bytes.size() >= maxPageBytes || (mayEndHead(m_page.bytes.sliced(unseen)) && m_isEnough(m_page)))
        end(Outcome::Fetched);
}

void PageFetcher::takeRest()
{
    if (m_reply->error() != QNetworkReply::NoError) {
        end(Outcome::Failed);
        return;
    }
    readOn();
    end(Outcome::Fetched);
}

void PageFetcher::follow(const QByteArray& location)
{
    const std::optional<QUrl> target = redirectTarget(m_reply->url(), location);
    if (!target || ++m_redirects > maxRedirects) {
        end(Outcome::Failed);
        return;
    }
    dropReply();
    request(*target);
}

void PageFetcher::end(Outcome outcome)
{
    dropReply();
    m_waiting.exit(int(outcome));
}

void PageFetcher::dropReply()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater(); // which ends it, too
    m_reply = nullptr;
}

} // namespace

std::optional<Page> fetchPage(const QUrl& link, std::chrono::milliseconds limit,
                              const std::function<bool(const Page&)>& isEnough)
{
    if (!isOnTheWeb(link))
        return {};
    return PageFetcher(isEnough).fetch(link, limit);
}

std::optional<QUrl> redirectTarget(const QUrl& from, const QByteArray& location)
{
    const QUrl target = from.resolved(QUrl::fromEncoded(location.trimmed()));
    const bool isDowngrade = from.scheme() == "https"_L1 && target.scheme() != "https"_L1;
    return !location.isEmpty() && isOnTheWeb(target) && !isDowngrade ? std::optional(target) : std::nullopt;
}

} // namespace Clipboard
