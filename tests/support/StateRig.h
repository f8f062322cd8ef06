#pragma once

#include "FixtureServer.h"
#include "ImageCache.h"
#include "TodayViewModel.h"

#include <memory>
#include <QTemporaryDir>

// A scripted score service, a private logo folder and state objects wired to both, with the
// clock in the test's hands.
class StateRig {
public:
    StateRig();

    FixtureServer &server() { return *m_server; }
    std::unique_ptr<TodayViewModel> makeModel();
    // Every list load and scorecard request has finished.
    static bool settled(const TodayViewModel &model);

    QDateTime now = QDateTime::fromString("2026-11-22T14:00:00+05:30", Qt::ISODate);
    std::chrono::milliseconds firstRetry = RefreshSchedule::live;
    bool inferSleepFromClock = true;

private:
    QTemporaryDir m_logoDir;
    std::unique_ptr<FixtureServer> m_server;
    std::unique_ptr<ImageCache> m_logos;
};
