#pragma once

#include <QDateTime>
#include <QElapsedTimer>

// The league's own time: it starts at a chosen moment and runs a chosen number of times faster
// than the wall clock.
class SimClock {
public:
    SimClock(QDateTime start, double speed);

    QDateTime now() const;
    // The league's time goes on from this moment.
    void jumpTo(const QDateTime &moment);

private:
    QDateTime m_start;
    double m_speed;
    QElapsedTimer m_elapsed;
};
