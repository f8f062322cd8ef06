#pragma once

#include <chrono>
#include <optional>
#include <QByteArray>
#include <QList>
#include <QPair>

class QTcpSocket;

// An HTTP/1.1 response written straight to the socket, so that any status line (199, 299) and
// any breakage (a connection dropped mid-body) can be produced.
struct HttpReply {
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
    QList<QPair<QByteArray, QByteArray>> headers;

    // Whole; cut short (the full length announced, half the body sent, the connection closed);
    // endless (no length, and the body repeated for as long as the client reads); or trickled
    // (the full length announced, one byte each interval).
    enum class Delivery { Whole, DropMidBody, Endless, Trickle };

    static HttpReply json(const QByteArray &body, int status = 200);
    static HttpReply text(int status, const QByteArray &message);

    void deliver(QTcpSocket *socket, Delivery delivery,
                 std::chrono::milliseconds interval = std::chrono::seconds(1)) const;
    void writeTo(QTcpSocket *socket) const;
    // Announces the full length, sends half the body, then closes the connection.
    void writeTruncatedTo(QTcpSocket *socket) const;
    // Announces no length and repeats the body for as long as the client reads (up to 1 GiB).
    void writeEndlesslyTo(QTcpSocket *socket) const;
    // Announces the full length and sends one byte each interval.
    void writeSlowlyTo(QTcpSocket *socket,
                       std::chrono::milliseconds interval = std::chrono::seconds(1)) const;

private:
    QByteArray head(std::optional<qint64> length) const;
};
