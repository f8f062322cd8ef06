#include "DurationSignalTracker.h"

#include "ApplicationActivation.h"
#include "DefaultSignalPayload.h"

#include <cmath>

DurationSignalTracker::DurationSignalTracker(Clock clock)
    : m_clock(std::move(clock))
{
    followApplicationActivation(
        this, [this](bool active) { active ? willBecomeActive() : didResignActive(); });
}

QString DurationSignalTracker::durationText(double seconds)
{
    return DefaultSignalPayload::decimalText(std::floor(seconds * 1000) / 1000);
}

void DurationSignalTracker::startTracking(const QString &name,
                                          const QMap<QString, QString> &parameters,
                                          bool includeBackgroundTime)
{
    const QDateTime now = m_clock();
    std::lock_guard locker(m_lock);
    m_startedSignals.insert(name, {now, parameters, includeBackgroundTime});
}

std::optional<DurationSignalTracker::Elapsed>
DurationSignalTracker::stopTracking(const QString &name)
{
    const QDateTime now = m_clock();
    std::lock_guard locker(m_lock);
    const auto found = m_startedSignals.constFind(name);
    if (found == m_startedSignals.cend())
        return std::nullopt;
    Elapsed elapsed{found->startTime.msecsTo(now) / 1000.0, found->parameters};
    m_startedSignals.erase(found);
    return elapsed;
}

void DurationSignalTracker::didResignActive()
{
    const QDateTime now = m_clock();
    std::lock_guard locker(m_lock);
    m_lastEnteredBackground = now;
}

void DurationSignalTracker::willBecomeActive()
{
    const QDateTime now = m_clock();
    std::lock_guard locker(m_lock);
    if (!m_lastEnteredBackground)
        return;
    const qint64 away = m_lastEnteredBackground->msecsTo(now);
    for (CachedData &data : m_startedSignals)
        if (!data.includeBackgroundTime)
            data.startTime = data.startTime.addMSecs(away);
    m_lastEnteredBackground.reset();
}
