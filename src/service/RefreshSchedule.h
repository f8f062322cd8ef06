#pragma once

#include "StatusTitle.h"

#include <chrono>

// How long to wait before asking the score service again after a successful load of today.
class RefreshSchedule {
public:
    static constexpr std::chrono::milliseconds live{30'000};
    static constexpr std::chrono::milliseconds notice{60'000};
    static constexpr std::chrono::milliseconds longest{600'000};
    static constexpr std::chrono::milliseconds lead{1'800'000}; // poll closely from 30 min out

    static std::chrono::milliseconds interval(StatusTitle::Schedule today, const QDateTime &now);
    // How long to wait after the given number of failed loads in a row: the first wait,
    // doubling each time, never longer than the idle interval.
    static std::chrono::milliseconds retryAfter(int failures,
                                                std::chrono::milliseconds first = live);
};
