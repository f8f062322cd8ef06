#include "SimClock.h"

#include <cmath>

SimClock::SimClock(QDateTime start, double speed)
    : m_start(std::move(start))
    , m_speed(speed)
{
    m_elapsed.start();
}

void SimClock::jumpTo(const QDateTime &moment)
{
    m_start = moment;
    m_elapsed.restart();
}

QDateTime SimClock::now() const
{
    return m_start.addMSecs(std::llround(double(m_elapsed.elapsed()) * m_speed));
}
