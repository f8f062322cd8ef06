#include "FixtureServer.h"

#include "HttpReply.h"

#include <QTcpSocket>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

FixtureServer::FixtureServer(QObject *parent)
    : QObject(parent)
    , m_listener([this](const HttpRequest &request, QTcpSocket *socket) {
        handleRequest(request, socket);
    })
{
    QString error;
    if (!m_listener.listen(0, &error))
        qFatal("FixtureServer: %s", qPrintable(error));
}

QString FixtureServer::baseURL() const
{
    return u"http://127.0.0.1:%1"_s.arg(m_listener.port());
}

void FixtureServer::script(const QString &path, const FixtureResponse &response)
{
    m_scripts.insert(path, response);
}

void FixtureServer::handleRequest(const HttpRequest &request, QTcpSocket *socket)
{
    const QString path = request.url.path();
    m_requestedPaths.append(path);
    m_requestBodies.append(request.body);
    const auto scripted = m_scripts.constFind(path);
    const FixtureResponse response = scripted != m_scripts.cend() ? *scripted : m_default;
    if (response.delay.count() > 0)
        QTimer::singleShot(response.delay, socket,
                           [socket, response] { respond(socket, response); });
    else
        respond(socket, response);
}

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
    case Delivery::Endless:
        reply.writeEndlesslyTo(socket);
        break;
    case Delivery::Trickle:
        reply.writeSlowlyTo(socket, std::chrono::milliseconds(50));
        break;
    }
}
