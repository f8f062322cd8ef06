#include "SimClock.h"

#include <cmath>

SimClock::SimClock(QDateTime start, double speed)
    : m_start(std::move(start))
    , m_speed(speed)
{
    m_elapsed.start();
}

QDateTime SimClock::now() const
{
    return m_start.addMSecs(std::llround(double(m_elapsed.elapsed()) * m_speed));
}
