#pragma once

#include <chrono>
#include <functional>
#include <QByteArray>
#include <QObject>
#include <QTimer>

class QNetworkReply;

// Reads one reply's body under a size cap and a total deadline, on top of the request's own
// inactivity timeout: a server that sends forever, or one byte a second, ends in an error
// instead of eating memory or holding up whatever waits for it.
class BoundedDownload : public QObject {
    Q_OBJECT

public:
    enum class Outcome { Finished, TooLarge, DeadlinePassed };

    struct Limits {
        qint64 maximumBytes;
        std::chrono::milliseconds deadline;
    };

    // Called once, on the reply's thread; the reply is deleted after it returns.
    using Done = std::function<void(QNetworkReply &reply, Outcome outcome, QByteArray body)>;

    // The download lives as long as the reply: when its manager deletes it, done is never called.
    static void start(QNetworkReply *reply, Limits limits, Done done);

private:
    BoundedDownload(QNetworkReply *reply, Limits limits, Done done);
    void readAvailable();
    void fail(Outcome outcome);
    void finish();

    QNetworkReply *m_reply;
    const Limits m_limits;
    Done m_done;
    QByteArray m_body;
    QTimer m_deadline;
    Outcome m_outcome = Outcome::Finished;
};
