#pragma once

#include <QLocalServer>
#include <QObject>

// Keeps one copy of the application per user session: the first claims a local socket; a later
// one asks it to show its popover and then steps aside.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    explicit SingleInstance(QString socketPath, QObject *parent = nullptr);

    // True when this process is the one; false after handing over to the running one.
    bool claim();

    // Under $XDG_RUNTIME_DIR, which only this user can enter.
    static QString defaultSocketPath();

signals:
    void showRequested();

private:
    QString m_socketPath;
    QLocalServer m_server;
};
