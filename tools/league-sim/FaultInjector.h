#pragma once

#include <chrono>
#include <QByteArray>
#include <QRandomGenerator64>

// Decides, request by request, whether the score service misbehaves and how.
class FaultInjector {
public:
    struct Rates {
        double fail = 0;    // answer 500 or 503
        double drop = 0;    // close the connection mid-body
        double garbage = 0; // malformed JSON, a bad matchID or a body of the wrong type
        double endless = 0; // a body that never ends
        double trickle = 0; // a body sent one byte a second
        std::chrono::milliseconds latency{0};
    };

    enum class Fault { None, Fail, Drop, Garbage, Endless, Trickle };

    FaultInjector(Rates rates, quint64 seed);

    std::chrono::milliseconds latency() const { return m_rates.latency; }
    Fault next();
    int failureStatus();
    // A broken stand-in for the given (valid) match list or scorecard body.
    QByteArray garbage(const QByteArray &validBody, bool isMatchList);

private:
    Rates m_rates;
    QRandomGenerator64 m_random;
};
