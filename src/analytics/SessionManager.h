#pragma once

#include "SerialWorker.h"
#include "StoredSession.h"

#include <functional>
#include <memory>
#include <optional>
#include <QMap>
#include <QObject>
#include <QSettings>
#include <QStringList>
#include <QTimer>

// How long the application is used: a rolling 90-day history of sessions, the days it was used
// on, and a new installation's first session. A session runs from its start whatever the focus
// (a tray app rarely has it); focus lost and regained afterwards pause and resume it. Lives on
// the main thread; only its writes to the store run on a worker, in order.
class SessionManager : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>; // now, in the user's time zone
    // The per-application store, or nothing when there is none.
    using Store = std::function<std::unique_ptr<QSettings>()>;
    using Announce = std::function<void(const QString &, const QMap<QString, QString> &)>;

    SessionManager(
        Store store, Announce announce, Clock clock = [] { return QDateTime::currentDateTime(); });
    // Writes the running session and waits for every write asked for.
    ~SessionManager() override;

    // Any thread; the session starts on the main thread.
    void startNewSession();
    void didResignActive();
    void willBecomeActive();

    const QList<StoredSession> &recentSessions() const { return m_recentSessions; }
    qint64 averageSessionSeconds() const;
    std::optional<int> previousSessionSeconds() const;
    qint64 totalSessionsCount() const;
    // The "TelemetryDeck.Acquisition." and "TelemetryDeck.Retention." keys of every signal.
    QMap<QString, QString> retentionParameters(const QDateTime &now) const;

private:
    void beginSession();
    void updateSessionDuration();
    void persistCurrentSessionIfNeeded();
    void writeSessions();
    void stopSessionTimer();
    void updateDistinctDaysUsed(QSettings &store);
    void persist(const QString &key, const QVariant &value);

    const Store m_store;
    const Announce m_announce;
    const Clock m_clock;
    QList<StoredSession> m_recentSessions;
    qint64 m_durationsBeforeLast = 0; // the sum the average is taken over
    qint64 m_deletedSessionsCount = 0;
    std::optional<QString> m_firstSessionDate;
    QStringList m_distinctDaysUsed;
    // Counted once a day: the list may be long.
    mutable std::optional<std::pair<QString, qsizetype>> m_daysSinceCutoff;
    QDateTime m_currentSessionStartedAt;
    double m_currentSessionDuration = 0;
    std::optional<QDateTime> m_sessionDurationLastUpdatedAt;
    // The history is written at most once a minute while a session runs, and when it pauses or
    // ends: a write every second would wake the disk all day.
    std::optional<QDateTime> m_sessionsWrittenAt;
    bool m_sessionsUnwritten = false;
    QTimer m_sessionDurationUpdater;
    SerialWorker m_persistenceQueue{"seprior.sessionmanager.persistence"};
};
