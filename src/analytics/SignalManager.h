#pragma once

#include "SignalCache.h"
#include "SignalManageable.h"
#include "SignalPostBody.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <QThread>
#include <QUrl>

class SignalSender;

// Turns accepted signals into records, keeps them until the ingest service takes them, and
// writes the ones still waiting to disk when the application quits.
class SignalManager : public SignalManageable {
public:
    // The session figures every signal carries, as they are at a moment; main thread.
    using Retention = std::function<QMap<QString, QString>(const QDateTime &now)>;

    explicit SignalManager(std::shared_ptr<TelemetryManagerConfiguration> configuration,
                           Retention retention = {});
    ~SignalManager() override;

    // Metadata on the main thread (it reads the desktop's state), the record built on the
    // worker thread.
    void processSignal(const QString &signalType, const QMap<QString, QString> &parameters,
                       std::optional<double> floatValue, const std::optional<QString> &customUserID,
                       std::shared_ptr<TelemetryManagerConfiguration> configuration) override;
    // On the worker thread, soon; may be called from any thread.
    void attemptToSendNextBatchOfCachedSignals() override;
    void attemptToSendNextBatchOfCachedSignals(std::chrono::milliseconds delay);

    // base + "v2/", or base + "v2/namespace/<ns>/"; nothing when that is no URL.
    static std::optional<QUrl> getServiceUrl(const QUrl &baseURL,
                                             const std::optional<QString> &namespace_);
    // This installation's anonymous user, made and stored on first use.
    static QString defaultUserIdentifier(const TelemetryManagerConfiguration &configuration);

    SignalCache<SignalPostBody> &signalCache() { return *m_signalCache; }
    void appWillTerminate();

private:
    // Main thread.
    void buildRecord(const QString &signalType, const QMap<QString, QString> &parameters,
                     std::optional<double> floatValue, const std::optional<QString> &customUserID,
                     const std::shared_ptr<TelemetryManagerConfiguration> &configuration);
    void stopSending();

    std::shared_ptr<TelemetryManagerConfiguration> m_configuration;
    const Retention m_retention;
    std::shared_ptr<SignalCache<SignalPostBody>> m_signalCache;
    QObject m_mainThread;  // queued work for the main thread dies with the manager
    QString m_defaultUser; // main thread only
    QThread m_timerThread;
    // On m_timerThread; nothing once that stopped. Any thread may ask it to send.
    std::atomic<SignalSender *> m_sender;
    QMetaObject::Connection m_willTerminate;
    QMetaObject::Connection m_applicationGone;
};
