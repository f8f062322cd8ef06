#include "HttpListener.h"

#include "HttpReply.h"

#include <memory>
#include <QTcpSocket>

HttpListener::HttpListener(Handler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, &HttpListener::accept);
}

bool HttpListener::listen(quint16 port, QString *error)
{
    if (m_server.listen(QHostAddress::LocalHost, port))
        return true;
    *error =
        QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(port).arg(m_server.errorString());
    return false;
}

void HttpListener::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        auto buffer = std::make_shared<QByteArray>();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
            buffer->append(socket->readAll());
            serve(socket, *buffer);
        });
    }
}

void HttpListener::serve(QTcpSocket *socket, QByteArray &buffer)
{
    const auto refuse = [socket, &buffer](int status, const QByteArray &why) {
        buffer.clear();
        HttpReply::text(status, why).writeTo(socket);
        socket->disconnectFromHost();
    };
    while (socket->state() == QAbstractSocket::ConnectedState) {
        const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
        if (headEnd < 0) {
            if (buffer.size() > maximumHeadLength)
                refuse(431, "request head too long");
            return;
        }
        const QList<QByteArray> lines = buffer.left(headEnd).split('\n');
        const QList<QByteArray> start = lines.first().trimmed().split(' ');
        if (start.size() != 3 || !start[2].startsWith("HTTP/1.")) {
            refuse(400, "not an HTTP/1.1 request line");
            return;
        }
        HttpRequest request{start[0], QUrl::fromEncoded(start[1]), {}, {}};
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0)
                request.headers.insert(lines[i].left(colon).trimmed().toLower(),
                                       lines[i].mid(colon + 1).trimmed());
        }
        if (request.headers.contains("transfer-encoding")) {
            refuse(411, "send the body with a Content-Length");
            return;
        }
        bool lengthOk = true;
        const qint64 length = request.headers.value("content-length", "0").toLongLong(&lengthOk);
        if (!lengthOk || length < 0 || length > maximumBodyLength) {
            refuse(413, "Content-Length must be a size up to 16 MiB");
            return;
        }
        if (buffer.size() < headEnd + 4 + length)
            return;
        request.body = buffer.mid(headEnd + 4, length);
        buffer.remove(0, headEnd + 4 + length);
        m_handler(request, socket);
    }
}
