#include "StateRig.h"

#include <QTest>

using namespace std::chrono_literals;

StateRig::StateRig()
    : m_server(std::make_unique<FixtureServer>())
    , m_logos(std::make_unique<ImageCache>(m_logoDir.filePath("logos")))
{
}

std::unique_ptr<TodayViewModel> StateRig::makeModel()
{
    TodayViewModel::Setup setup;
    setup.serviceURL = m_server->baseURL();
    setup.clock = [this] { return now; };
    setup.logos = m_logos.get();
    setup.requestTimeout = 2s;
    setup.firstRetry = firstRetry;
    setup.inferSleepFromClock = inferSleepFromClock;
    return std::make_unique<TodayViewModel>(setup);
}

bool StateRig::settled(const TodayViewModel &model)
{
    return QTest::qWaitFor([&] {
        return !model.isLoading() && !model.isLoadingFixtures() && !model.isLoadingResults() &&
               model.loadingScorecards().isEmpty();
    });
}
