#include "FixtureServer.h"

#include "HttpReply.h"

#include <QHttpServerRequest>
#include <QTcpSocket>
#include <QTimer>

FixtureServer::FixtureServer(QObject *parent)
    : QAbstractHttpServer(parent)
{
    m_port = listen(QHostAddress::LocalHost, 0);
    if (m_port == 0)
        qFatal("FixtureServer: cannot listen on 127.0.0.1");
}

QString FixtureServer::baseURL() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

void FixtureServer::script(const QString &path, const FixtureResponse &response)
{
    m_scripts.insert(path, response);
}

bool FixtureServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    const QString path = request.url().path();
    m_requestedPaths.append(path);
    const auto scripted = m_scripts.constFind(path);
    const FixtureResponse response = scripted != m_scripts.cend() ? *scripted : m_default;
    if (response.delay.count() > 0)
        QTimer::singleShot(response.delay, socket,
                           [socket, response] { respond(socket, response); });
    else
        respond(socket, response);
    return true;
}

void FixtureServer::missingHandler(const QHttpServerRequest &, QTcpSocket *socket)
{
    respond(socket, FixtureResponse{404, {}});
}

namespace {

QByteArray headWithLength(const FixtureResponse &response, const QByteArray &length)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Zel\r\n";
    if (!length.isEmpty())
        head += "Content-Length: " + length + "\r\n";
    return head + "Content-Type: " + response.contentType + "\r\n\r\n";
}

// Writes a piece every few milliseconds while the client keeps the connection open.
template <typename Piece> void keepWriting(QTcpSocket *socket, int intervalMs, Piece piece)
{
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, piece]() mutable {
        if (socket->state() != QAbstractSocket::ConnectedState || !piece(*socket))
            timer->stop();
    });
    timer->start(intervalMs);
}

} // namespace

void FixtureServer::respond(QTcpSocket *socket, const FixtureResponse &response)
{
    const HttpReply reply{response.status, response.body, response.contentType, {}};
    using Delivery = FixtureResponse::Delivery;
    switch (response.delivery) {
    case Delivery::Whole:
        reply.writeTo(socket);
        break;
    case Delivery::DropMidBody:
        reply.writeTruncatedTo(socket);
        break;
    case Delivery::Endless: {
        socket->write(headWithLength(response, {}));
        const QByteArray chunk =
            response.body.repeated(1 + (1 << 20) / qMax<qsizetype>(1, response.body.size()));
        qint64 left = qint64(1) << 30; // a bound on the test, not on the client
        keepWriting(socket, 1, [chunk, left](QTcpSocket &s) mutable {
            if (s.bytesToWrite() < 2 * chunk.size())
                left -= s.write(chunk);
            return left > 0;
        });
        break;
    }
    case Delivery::Trickle: {
        socket->write(headWithLength(response, QByteArray::number(response.body.size())));
        qsizetype sent = 0;
        keepWriting(socket, 50, [body = response.body, sent](QTcpSocket &s) mutable {
            s.write(body.mid(sent++, 1));
            return sent < body.size();
        });
        break;
    }
    case Delivery::DeclaredHuge:
        socket->write(headWithLength(response, QByteArray::number(qint64(1) << 30)));
        socket->write(response.body);
        break;
    }
}
