#pragma once

#include <functional>
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// One request as a client sent it: header names in lower case.
struct HttpRequest {
    QByteArray method;
    QUrl url;
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;
};

// A small HTTP/1.1 server on 127.0.0.1 that reads requests off their connections and hands each,
// with its connection, to the handler, which answers by writing bytes to it. Qt's HTTP server
// keeps the connection to itself since Qt 6.8, and a hostile server must write anything: a status
// line of 199, a body cut short, one that never ends. Connections stay open for further requests.
class HttpListener : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const HttpRequest &, QTcpSocket *)>;

    // Past these a request is refused and its connection closed.
    static constexpr qsizetype maximumHeadLength = 64 * 1024;
    static constexpr qsizetype maximumBodyLength = 16 * 1024 * 1024;

    explicit HttpListener(Handler handler, QObject *parent = nullptr);

    // Listens on 127.0.0.1 (port 0: any free port); false with a reason when that fails.
    bool listen(quint16 port, QString *error);
    quint16 port() const { return m_server.serverPort(); }

private:
    void accept();
    // Takes each whole request off the front of the connection's buffer.
    void serve(QTcpSocket *socket, QByteArray &buffer);

    Handler m_handler;
    QTcpServer m_server;
};
