#pragma once

#include <QObject>
#include <QSocketNotifier>

// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit of the event loop, so that whatever
// is saved on quitting is saved. The handler only writes a byte to a pipe.
class SignalQuitter : public QObject {
    Q_OBJECT

public:
    explicit SignalQuitter(QObject *parent = nullptr);
    ~SignalQuitter() override;

private:
    static void handle(int signal);
    static inline int s_writeEnd = -1;
    int m_fds[2] = {-1, -1};
    QSocketNotifier *m_notifier = nullptr;
};
