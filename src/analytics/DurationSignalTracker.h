#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QObject>

// Times named activities for duration signals. Any thread may start, stop or cancel one; time
// the application spends inactive is left out unless the caller asks for it.
class DurationSignalTracker : public QObject {
public:
    using Clock = std::function<QDateTime()>;
    struct Elapsed {
        double seconds = 0;
        QMap<QString, QString> parameters;
    };

    // Seconds as a duration signal carries them: rounded down to three decimals.
    static QString durationText(double seconds);

    explicit DurationSignalTracker(Clock clock = &QDateTime::currentDateTimeUtc);

    // A second start under the same name starts it over.
    void startTracking(const QString &name, const QMap<QString, QString> &parameters,
                       bool includeBackgroundTime);
    // Nothing when nothing of that name runs.
    std::optional<Elapsed> stopTracking(const QString &name);
    void didResignActive();
    void willBecomeActive();

private:
    struct CachedData {
        QDateTime startTime;
        QMap<QString, QString> parameters;
        bool includeBackgroundTime = false;
    };

    const Clock m_clock;
    std::mutex m_lock; // guards the two below
    QHash<QString, CachedData> m_startedSignals;
    std::optional<QDateTime> m_lastEnteredBackground;
};
