#include "SessionManager.h"

#include "ApplicationActivation.h"

#include <algorithm>
#include <limits>
#include <QCoreApplication>

using namespace std::chrono_literals;

namespace {
const QString recentSessionsKey = QStringLiteral("recentSessions");
const QString deletedSessionsCountKey = QStringLiteral("deletedSessionsCount");
const QString firstSessionDateKey = QStringLiteral("firstSessionDate");
const QString distinctDaysUsedKey = QStringLiteral("distinctDaysUsed");
constexpr qint64 historySeconds = 7'776'000; // 90 days
constexpr qint64 lastMonthSeconds = 2'592'000;
constexpr qint64 sessionWriteSeconds = 60;
// A history of 90 days is a few KiB; a larger value is not one the client wrote.
constexpr qsizetype largestHistoryBytes = 4 * 1024 * 1024;

qint64 saturatingSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return qAddOverflow(a, b, &sum) ? std::numeric_limits<qint64>::max() : sum;
}

QString isoDate(const QDateTime &moment)
{
    return moment.date().toString(Qt::ISODate);
}
} // namespace

SessionManager::SessionManager(Store store, Announce announce, Clock clock)
    : m_store(std::move(store))
    , m_announce(std::move(announce))
    , m_clock(std::move(clock))
{
    m_sessionDurationUpdater.setInterval(1s);
    connect(&m_sessionDurationUpdater, &QTimer::timeout, this,
            &SessionManager::updateSessionDuration);

    if (const std::unique_ptr<QSettings> stored = m_store()) {
        const QByteArray history = stored->value(recentSessionsKey).toByteArray();
        if (history.size() <= largestHistoryBytes)
            m_recentSessions = StoredSession::decode(history);
        const qint64 cutoff = m_clock().toSecsSinceEpoch() - historySeconds;
        const qsizetype dropped = m_recentSessions.removeIf(
            [cutoff](const StoredSession &s) { return s.startedAt.toSecsSinceEpoch() <= cutoff; });
        bool isNumber = false;
        m_deletedSessionsCount =
            std::max<qint64>(stored->value(deletedSessionsCountKey).toLongLong(&isNumber), 0);
        if (!isNumber)
            m_deletedSessionsCount = 0;
        if (dropped > 0) {
            m_deletedSessionsCount = saturatingSum(m_deletedSessionsCount, dropped);
            persist(deletedSessionsCountKey, m_deletedSessionsCount);
        }
        const QVariant first = stored->value(firstSessionDateKey);
        if (first.typeId() == QMetaType::QString && !first.toString().isEmpty())
            m_firstSessionDate = first.toString();
        updateDistinctDaysUsed(*stored);
    }
    for (qsizetype i = 0; i + 1 < m_recentSessions.size(); ++i)
        m_durationsBeforeLast += m_recentSessions[i].durationInSeconds;

    followApplicationActivation(
        this, [this](bool active) { active ? willBecomeActive() : didResignActive(); });
    if (const QCoreApplication *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, [this] {
            updateSessionDuration();
            writeSessions();
            stopSessionTimer();
        });
}

SessionManager::~SessionManager()
{
    writeSessions(); // the worker then finishes every write asked for
}

void SessionManager::startNewSession()
{
    QMetaObject::invokeMethod(this, &SessionManager::beginSession);
}

void SessionManager::beginSession()
{
    stopSessionTimer();
    if (m_recentSessions.isEmpty()) {
        const QString date = isoDate(m_clock());
        m_firstSessionDate = date;
        persist(firstSessionDateKey, date);
        m_announce(QStringLiteral("TelemetryDeck.Acquisition.newInstallDetected"),
                   {{QStringLiteral("TelemetryDeck.Acquisition.firstSessionDate"), date}});
    }
    m_currentSessionStartedAt = m_clock();
    m_currentSessionDuration = 0;
    updateSessionDuration();
    m_sessionDurationUpdater.start();
}

void SessionManager::updateSessionDuration()
{
    const QDateTime now = m_clock();
    if (m_sessionDurationLastUpdatedAt)
        m_currentSessionDuration += m_sessionDurationLastUpdatedAt->msecsTo(now) / 1000.0;
    m_sessionDurationLastUpdatedAt = now;
    persistCurrentSessionIfNeeded();
}

void SessionManager::persistCurrentSessionIfNeeded()
{
    if (m_currentSessionDuration < 1.0 || !m_currentSessionStartedAt.isValid())
        return;
    const StoredSession current{
        m_currentSessionStartedAt,
        int(std::min(m_currentSessionDuration, double(std::numeric_limits<int>::max())))};
    if (!m_recentSessions.isEmpty() && m_recentSessions.last().startedAt == current.startedAt) {
        m_recentSessions.last() = current;
    } else {
        if (!m_recentSessions.isEmpty())
            m_durationsBeforeLast += m_recentSessions.last().durationInSeconds;
        m_recentSessions.append(current);
    }
    m_sessionsUnwritten = true;
    if (!m_sessionsWrittenAt || m_sessionsWrittenAt->secsTo(m_clock()) >= sessionWriteSeconds)
        writeSessions();
}

void SessionManager::writeSessions()
{
    if (!m_sessionsUnwritten)
        return;
    m_sessionsUnwritten = false;
    m_sessionsWrittenAt = m_clock();
    persist(recentSessionsKey, StoredSession::encode(m_recentSessions));
}

void SessionManager::stopSessionTimer()
{
    m_sessionDurationUpdater.stop();
    m_sessionDurationLastUpdatedAt.reset();
}

void SessionManager::didResignActive()
{
    updateSessionDuration();
    writeSessions();
    stopSessionTimer();
}

void SessionManager::willBecomeActive()
{
    if (!m_currentSessionStartedAt.isValid())
        return; // no session yet
    updateSessionDuration();
    m_sessionDurationUpdater.start();
}

void SessionManager::updateDistinctDaysUsed(QSettings &store)
{
    const QString today = isoDate(m_clock());
    const QVariant stored = store.value(distinctDaysUsedKey);
    if (stored.typeId() == QMetaType::QStringList || stored.typeId() == QMetaType::QString)
        m_distinctDaysUsed = stored.toStringList();
    m_daysSinceCutoff.reset();
    if (!m_distinctDaysUsed.isEmpty() && m_distinctDaysUsed.last() == today)
        return;
    m_distinctDaysUsed.append(today);
    persist(distinctDaysUsedKey, m_distinctDaysUsed);
}

void SessionManager::persist(const QString &key, const QVariant &value)
{
    // QSettings replaces the file through QSaveFile: a kill mid-write leaves the old one.
    m_persistenceQueue.post([store = m_store, key, value] {
        if (const std::unique_ptr<QSettings> settings = store())
            settings->setValue(key, value);
    });
}

qint64 SessionManager::averageSessionSeconds() const
{
    const qsizetype count = m_recentSessions.size() - 1;
    return count > 0 ? m_durationsBeforeLast / count : 0;
}

std::optional<int> SessionManager::previousSessionSeconds() const
{
    if (m_recentSessions.size() < 2)
        return std::nullopt;
    return m_recentSessions[m_recentSessions.size() - 2].durationInSeconds;
}

qint64 SessionManager::totalSessionsCount() const
{
    return saturatingSum(m_deletedSessionsCount, m_recentSessions.size());
}

QMap<QString, QString> SessionManager::retentionParameters(const QDateTime &now) const
{
    const QString cutoff = isoDate(now.addSecs(-lastMonthSeconds));
    if (!m_daysSinceCutoff || m_daysSinceCutoff->first != cutoff)
        m_daysSinceCutoff.emplace(
            cutoff, std::count_if(m_distinctDaysUsed.cbegin(), m_distinctDaysUsed.cend(),
                                  [&cutoff](const QString &day) { return day >= cutoff; }));
    QMap<QString, QString> keys{
        {"TelemetryDeck.Acquisition.firstSessionDate", m_firstSessionDate.value_or(isoDate(now))},
        {"TelemetryDeck.Retention.averageSessionSeconds", QString::number(averageSessionSeconds())},
        {"TelemetryDeck.Retention.distinctDaysUsed", QString::number(m_distinctDaysUsed.size())},
        {"TelemetryDeck.Retention.distinctDaysUsedLastMonth",
         QString::number(m_daysSinceCutoff->second)},
        {"TelemetryDeck.Retention.totalSessionsCount", QString::number(totalSessionsCount())},
    };
    if (const auto previous = previousSessionSeconds())
        keys.insert(QStringLiteral("TelemetryDeck.Retention.previousSessionSeconds"),
                    QString::number(*previous));
    return keys;
}
