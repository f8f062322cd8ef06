#pragma once

#include "SignalCache.h"
#include "SignalPostBody.h"

#include <memory>
#include <QHash>
#include <QObject>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;
class TelemetryManagerConfiguration;

// Lives on the signal manager's worker thread: every 10 s, and when asked, posts the oldest
// pending records to the ingest service. A batch that is not accepted goes back to the cache,
// and so does one still under way when the thread stops.
class SignalSender : public QObject {
    Q_OBJECT

public:
    using Cache = SignalCache<SignalPostBody>;
    static constexpr int sendIntervalMs = 10000;

    // Without a service URL every batch stays in the cache.
    SignalSender(std::shared_ptr<Cache> cache,
                 std::shared_ptr<TelemetryManagerConfiguration> configuration,
                 std::optional<QUrl> serviceURL);
    ~SignalSender() override;

    // On the worker thread, once.
    void start();
    void attemptToSendNextBatch();

private:
    void finished(QNetworkReply &reply, bool complete, const QByteArray &body);
    void log(LogLevel level, const QString &message) const;

    std::shared_ptr<Cache> m_cache;
    std::shared_ptr<TelemetryManagerConfiguration> m_configuration;
    const std::optional<QUrl> m_serviceURL;
    QNetworkAccessManager *m_network = nullptr;
    QTimer *m_timer = nullptr;
    QHash<QNetworkReply *, QList<SignalPostBody>> m_inFlight;
};
