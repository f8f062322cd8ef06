#pragma once

#include "HttpListener.h"
#include "HttpReply.h"

#include <chrono>
#include <QByteArray>
#include <QHash>
#include <QMetaType>
#include <QStringList>

// One scripted answer of the fixture server.
struct FixtureResponse {
    using Delivery = HttpReply::Delivery; // a trickle goes one byte every 50 ms

    int status = 200;
    QByteArray body; // empty: no body at all
    std::chrono::milliseconds delay{0};
    Delivery delivery = Delivery::Whole;
    QByteArray contentType = "application/json";
};
// Declared with the type, before any test table uses it.
Q_DECLARE_METATYPE(FixtureResponse)

// A real HTTP server on 127.0.0.1 that answers each path as scripted; anything else is a 404.
// Responses are written byte by byte, so any status line (199, 299) and any breakage is possible.
class FixtureServer : public QObject {
    Q_OBJECT

public:
    explicit FixtureServer(QObject *parent = nullptr);

    QString baseURL() const;
    void script(const QString &path, const FixtureResponse &response);
    // The answer for every path without a script of its own (a 404 unless set).
    void scriptDefault(const FixtureResponse &response) { m_default = response; }
    qsizetype requestCount(const QString &path) const { return m_requestedPaths.count(path); }

    // Paths in the order their requests arrived, and the bodies they brought.
    const QStringList &requestedPaths() const { return m_requestedPaths; }
    const QList<QByteArray> &requestBodies() const { return m_requestBodies; }

private:
    void handleRequest(const HttpRequest &request, QTcpSocket *socket);

    HttpListener m_listener;
    QHash<QString, FixtureResponse> m_scripts;
    FixtureResponse m_default{404, "{\"error\":\"not found\"}"};
    QStringList m_requestedPaths;
    QList<QByteArray> m_requestBodies;
};
