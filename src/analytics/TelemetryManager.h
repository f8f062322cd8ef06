#pragma once

#include "DurationSignalTracker.h"
#include "SessionManager.h"
#include "SignalManager.h"

#include <functional>
#include <memory>
#include <mutex>
#include <QDateTime>

class TelemetryManagerConfiguration;

// The analytics client's one running instance: its configuration, its signal manager, the
// session and duration trackers, and the moments that decide when a sync may be asked for and
// when a session starts over.
class TelemetryManager : public std::enable_shared_from_this<TelemetryManager> {
public:
    using Clock = std::function<QDateTime()>;

    // Also starts the first session, half a second later on the main thread.
    static std::shared_ptr<TelemetryManager>
    create(std::shared_ptr<TelemetryManagerConfiguration> configuration,
           Clock clock = &QDateTime::currentDateTimeUtc);
    TelemetryManager(std::shared_ptr<TelemetryManagerConfiguration> configuration, Clock clock);

    // The older static interface, with the facade's effects.
    static void initialize(std::shared_ptr<TelemetryManagerConfiguration> configuration);
    static void terminate();
    static bool isInitialized();
    // Fatal when nothing is initialised, except in preview mode.
    static std::shared_ptr<TelemetryManager> shared();
    static void send(const QString &signalType, const QMap<QString, QString> &parameters = {});
    static void send(const QString &signalType, const std::optional<QString> &clientUser,
                     std::optional<double> floatValue,
                     const QMap<QString, QString> &parameters = {});
    static void requestImmediateSync();
    static void updateDefaultUser(const std::optional<QString> &user);
    static void generateNewSession();

    // Prefixes the name and the keys, warns of reserved names, and queues the signal.
    void signal(const QString &signalName, const QMap<QString, QString> &parameters,
                std::optional<double> floatValue, const std::optional<QString> &customUserID);
    // The client's own signals: no prefix on the name, no name checks.
    void internalSignal(const QString &signalName, const QMap<QString, QString> &parameters = {},
                        std::optional<double> floatValue = {},
                        const std::optional<QString> &customUserID = {});

    std::shared_ptr<TelemetryManagerConfiguration> configuration() const;
    QString hashedDefaultUser() const;
    SignalManageable &signalManager() { return *m_signalManager; }
    // Main thread only.
    SessionManager &sessionManager() { return *m_sessionManager; }
    DurationSignalTracker &durationSignalTracker() { return *m_durationSignalTracker; }

    // At most one flush every 10 s, 50 ms after the request.
    void syncSoon();
    // A return within five minutes continues the session.
    void willEnterForeground();
    void didEnterBackground();

private:
    // Deleted on their own thread, whichever thread lets the manager go.
    struct DeleteOnOwnThread {
        void operator()(QObject *object) const;
    };

    void sessionBegan();

    // Declared before the signal manager, which reads its figures for every signal.
    std::unique_ptr<SessionManager, DeleteOnOwnThread> m_sessionManager;
    std::shared_ptr<SignalManager> m_signalManager;
    std::unique_ptr<DurationSignalTracker, DeleteOnOwnThread> m_durationSignalTracker;
    const Clock m_clock;
    mutable std::mutex m_lock; // guards the three below
    std::shared_ptr<TelemetryManagerConfiguration> m_configuration;
    QDateTime m_lastTimeImmediateSyncRequested;
    QDateTime m_lastDateAppEnteredBackground;
};
