#include "FixtureServer.h"

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
    QTimer::singleShot(response.delay, socket, [socket, response] {
        HttpReply{response.status, response.body, response.contentType, {}}.deliver(
            socket, response.delivery, std::chrono::milliseconds(50));
    });
}
