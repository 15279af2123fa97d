#include "LoopbackServer.h"

#include <QSslServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace Clipboard::Testing {

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QTcpServer> makeServer(const std::optional<QSslConfiguration>& encryption)
{
    if (!encryption)
        return std::make_unique<QTcpServer>();
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(*encryption);
    server->setHandshakeTimeout(30'000);
    return server;
}

/// Without it a client cannot tell an empty body from a connection that broke, and asks again.
QByteArray lengthOf(const LoopbackServer::Reply& reply)
{
    const bool isSaid = reply.headers.contains("Content-Length");
    const bool isOpen = reply.ending == LoopbackServer::Reply::Ending::Hang;
    return isSaid || isOpen ? QByteArray() : "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
}

} // namespace

LoopbackServer::LoopbackServer(const std::optional<QSslConfiguration>& encryption)
    : m_server(makeServer(encryption))
{
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(), [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection())
            serve(*socket);
    });
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("No port on loopback: %s", qPrintable(m_server->errorString()));
    m_root.setScheme(encryption ? u"https"_s : u"http"_s);
    m_root.setHost(u"127.0.0.1"_s);
    m_root.setPort(m_server->serverPort());
    m_server->moveToThread(&m_thread);
    m_thread.start();
}

LoopbackServer::~LoopbackServer()
{
    // Where it lives; its sockets are its children.
    QMetaObject::invokeMethod(
        m_server.get(), [this] { m_server.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void LoopbackServer::answer(const QByteArray& path, const Reply& reply)
{
    const QMutexLocker lock(&m_mutex);
    m_replies.insert(path, reply);
}

QUrl LoopbackServer::url(const QByteArray& path) const
{
    return m_root.resolved(QUrl::fromEncoded(path));
}

QByteArrayList LoopbackServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

void LoopbackServer::serve(QTcpSocket& socket)
{
    QObject::connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    const auto read = [this, &socket, head = QByteArray(), isAnswered = false]() mutable {
        head += socket.readAll();
        if (isAnswered || !head.contains("\r\n\r\n"))
            return;
        isAnswered = true;
        const Reply reply = replyTo(head);
        if (reply.status.isEmpty())
            return; // it is to hang
        socket.write("HTTP/1.1 " + reply.status + "\r\n" + reply.headers + lengthOf(reply) +
                     "Connection: close\r\n\r\n");
        send(socket, reply, 0);
    };
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket, read);
    if (socket.bytesAvailable() > 0)
        QMetaObject::invokeMethod(&socket, &QTcpSocket::readyRead, Qt::QueuedConnection);
}

void LoopbackServer::send(QTcpSocket& socket, const Reply& reply, qsizetype from) const
{
    const qsizetype piece = reply.pieceBytes > 0 ? reply.pieceBytes : reply.body.size();
    socket.write(reply.body.mid(from, piece));
    const qsizetype next = from + piece;
    if (next < reply.body.size())
        QTimer::singleShot(reply.pause, &socket, [this, &socket, reply, next] { send(socket, reply, next); });
    else if (reply.ending == Reply::Ending::Close)
        socket.disconnectFromHost();
}

LoopbackServer::Reply LoopbackServer::replyTo(const QByteArray& request)
{
    const QMutexLocker lock(&m_mutex);
    m_requests.append(request);
    return m_replies.value(request.split(' ').value(1), {.body = "<title>Not here</title>", .status = "404 Not Found"});
}

} // namespace Clipboard::Testing
