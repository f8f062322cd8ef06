#include "HttpReply.h"

#include <QTcpSocket>
#include <QTimer>

HttpReply HttpReply::json(const QByteArray &body, int status)
{
    return HttpReply{status, body, "application/json", {}};
}

HttpReply HttpReply::text(int status, const QByteArray &message)
{
    return HttpReply{status, message + '\n', "text/plain; charset=utf-8", {}};
}

QByteArray HttpReply::head(std::optional<qint64> length) const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Zel\r\n";
    if (length)
        head += "Content-Length: " + QByteArray::number(*length) + "\r\n";
    if (!body.isEmpty())
        head += "Content-Type: " + contentType + "\r\n";
    for (const auto &[name, value] : headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

void HttpReply::deliver(QTcpSocket *socket, Delivery delivery,
                        std::chrono::milliseconds interval) const
{
    switch (delivery) {
    case Delivery::Whole:
        return writeTo(socket);
    case Delivery::DropMidBody:
        return writeTruncatedTo(socket);
    case Delivery::Endless:
        return writeEndlesslyTo(socket);
    case Delivery::Trickle:
        return writeSlowlyTo(socket, interval);
    }
}

void HttpReply::writeTo(QTcpSocket *socket) const
{
    socket->write(head(body.size()));
    socket->write(body);
}

namespace {

// Calls piece every interval while the connection is open and piece asks for more.
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

void HttpReply::writeEndlesslyTo(QTcpSocket *socket) const
{
    socket->write(head(std::nullopt));
    const QByteArray chunk = (body.isEmpty() ? QByteArray(" ") : body)
                                 .repeated(1 + (1 << 20) / qMax<qsizetype>(1, body.size()));
    qint64 left = qint64(1) << 30;
    // As fast as the client reads, a chunk or two ahead of it.
    keepWriting(socket, 1, [chunk, left](QTcpSocket &s) mutable {
        while (left > 0 && s.bytesToWrite() < 2 * chunk.size())
            left -= s.write(chunk);
        return left > 0;
    });
}

void HttpReply::writeSlowlyTo(QTcpSocket *socket, std::chrono::milliseconds interval) const
{
    socket->write(head(body.size()));
    qsizetype sent = 0;
    keepWriting(socket, int(interval.count()), [body = body, sent](QTcpSocket &s) mutable {
        s.write(body.mid(sent++, 1));
        return sent < body.size();
    });
}

void HttpReply::writeTruncatedTo(QTcpSocket *socket) const
{
    socket->write(head(body.size()));
    socket->write(body.left(body.size() / 2));
    socket->disconnectFromHost();
}
