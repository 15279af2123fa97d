#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QMutex>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace Clipboard::Testing {

/// A web server on loopback, on a thread of its own, so that a test may wait for its client. What it answers is set by
/// path; any other path is answered with 404.
class LoopbackServer final
{
public:
    struct Reply
    {
        QByteArray body{};
        QByteArray status = "200 OK";
        QByteArray headers = "Content-Type: text/html; charset=utf-8\r\n"; ///< each line with its end

        enum class Ending { Close, Hang };
        Ending ending = Ending::Close; ///< what follows the last byte

        qsizetype pieceBytes = 0; ///< sent at a time, with a pause after each; 0: all at once, without a pause
        std::chrono::milliseconds pause{0};
    };

    /// Serves https when `encryption` is given.
    explicit LoopbackServer(const std::optional<QSslConfiguration>& encryption = {});
    ~LoopbackServer();
    Q_DISABLE_COPY_MOVE(LoopbackServer)

    /// An answer that leads to another place.
    [[nodiscard]] static Reply redirect(const QByteArray& location, const QByteArray& status = "302 Found")
    {
        return {.status = status, .headers = "Location: " + location + "\r\n"};
    }

    void answer(const QByteArray& path, const Reply& reply);

    /// Takes the connection and never says anything.
    void hang(const QByteArray& path) { answer(path, {.status = {}}); }

    [[nodiscard]] QUrl url(const QByteArray& path) const;

    /// What has been asked so far, in order: the request line and the header lines as they came.
    [[nodiscard]] QByteArrayList requests() const;

private:
    void serve(QTcpSocket& socket);
    void send(QTcpSocket& socket, const Reply& reply, qsizetype from) const;
    [[nodiscard]] Reply replyTo(const QByteArray& request);

    mutable QMutex m_mutex;
    QHash<QByteArray, Reply> m_replies;
    QByteArrayList m_requests;
    QUrl m_root;
    QThread m_thread;
    std::unique_ptr<QTcpServer> m_server; ///< lives on the thread
};

} // namespace Clipboard::Testing
