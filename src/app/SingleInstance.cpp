#include "SingleInstance.h"

#include <QLocalSocket>
#include <QLoggingCategory>
#include <QStandardPaths>

namespace {
Q_LOGGING_CATEGORY(lcInstance, "zel.instance")
constexpr int handshakeMs = 1000;
const QByteArray showCommand = "show\n";
} // namespace

SingleInstance::SingleInstance(QString socketPath, QObject *parent)
    : QObject(parent)
    , m_socketPath(std::move(socketPath))
{
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            // Anything but the one command is ignored; a short line is all we ever read.
            const auto readCommand = [this, socket] {
                if (!socket->canReadLine())
                    return;
                if (socket->readLine(64) == showCommand)
                    emit showRequested();
                socket->disconnectFromServer();
            };
            connect(socket, &QLocalSocket::readyRead, this, readCommand);
            readCommand();
        }
    });
}

QString SingleInstance::defaultSocketPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/zel-menubar.socket");
}

bool SingleInstance::claim()
{
    QLocalSocket other;
    other.connectToServer(m_socketPath);
    if (other.waitForConnected(handshakeMs)) {
        other.write(showCommand);
        other.waitForBytesWritten(handshakeMs);
        other.disconnectFromServer();
        return false;
    }
    // Nobody answers: whatever is left at the path is a crashed copy's socket.
    QLocalServer::removeServer(m_socketPath);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(m_socketPath))
        qCWarning(lcInstance) << "cannot listen on" << m_socketPath << m_server.errorString()
                              << "- a second launch will start a second copy";
    return true;
}
