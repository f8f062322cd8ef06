#include "HttpReply.h"

#include <QTcpSocket>

HttpReply HttpReply::json(const QByteArray &body, int status)
{
    return HttpReply{status, body, "application/json", {}};
}

HttpReply HttpReply::text(int status, const QByteArray &message)
{
    return HttpReply{status, message + '\n', "text/plain; charset=utf-8", {}};
}

QByteArray HttpReply::head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Zel\r\n";
    head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    if (!body.isEmpty())
        head += "Content-Type: " + contentType + "\r\n";
    for (const auto &[name, value] : headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

void HttpReply::writeTo(QTcpSocket *socket) const
{
    socket->write(head());
    socket->write(body);
}

void HttpReply::writeTruncatedTo(QTcpSocket *socket) const
{
    socket->write(head());
    socket->write(body.left(body.size() / 2));
    socket->disconnectFromHost();
}
