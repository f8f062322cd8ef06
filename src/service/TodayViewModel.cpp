#include "TodayViewModel.h"

#include "ImageCache.h"
#include "LeagueCalendar.h"

#include <algorithm>
#include <QLoggingCategory>
#include <QPointer>

namespace {

// Off by default: QT_LOGGING_RULES="zel.refresh.debug=true" follows the refresh chain.
Q_LOGGING_CATEGORY(lcRefresh, "zel.refresh", QtInfoMsg)

// Runs on the next turn of the main loop, and not at all once the owner is gone.
template <typename F> void later(QObject *owner, F &&step)
{
    QMetaObject::invokeMethod(owner, std::forward<F>(step), Qt::QueuedConnection);
}

} // namespace

// What differs between the three list loads; the steps are the same.
struct TodayViewModel::ListLoad {
    bool TodayViewModel::*loading;
    void (TodayViewModel::*loadingChanged)();
    QString TodayViewModel::*error;
    void (TodayViewModel::*errorChanged)();
    void (APIClient::*request)(APIClient::MatchesCompletion);
    void (TodayViewModel::*loaded)(QList<ZelMatch>);
    void (TodayViewModel::*failed)(const QString &description);
};

TodayViewModel::TodayViewModel(Setup setup, QObject *parent)
    : QObject(parent)
    , m_setup(std::move(setup))
    , m_client(m_setup.serviceURL, m_setup.requestTimeout)
    , m_logos(m_setup.logos ? *m_setup.logos : ImageCache::shared())
{
    m_autoRefreshTimer.setSingleShot(true);
    // A coarse timer may fire up to 5 % late: a minute's countdown would skip a minute.
    m_autoRefreshTimer.setTimerType(Qt::PreciseTimer);
    m_ticker.setTimerType(Qt::PreciseTimer);
    connect(&m_autoRefreshTimer, &QTimer::timeout, this, &TodayViewModel::fetchToday);

    m_offlineDue.setSingleShot(true);
    m_offlineDue.setTimerType(Qt::PreciseTimer);
    connect(&m_offlineDue, &QTimer::timeout, this, [this] { updateOffline(); });

    m_ticker.setInterval(tickInterval);
    connect(&m_ticker, &QTimer::timeout, this, &TodayViewModel::tick);
    m_ticker.start();
    resetSleepWatch();

    fetchToday();
    fetchFixtures();
}

void TodayViewModel::load(const ListLoad &list)
{
    if (this->*list.loading)
        return;
    this->*list.loading = true;
    emit(this->*list.loadingChanged)();
    if (!(this->*list.error).isEmpty()) {
        (this->*list.error).clear();
        emit(this->*list.errorChanged)();
    }
    (m_client.*list.request)([self = QPointer(this), list](Result<QList<ZelMatch>> result) {
        if (!self)
            return;
        later(self, [self, list, result = std::move(result)]() mutable {
            // The flag drops before the outcome is told, and is told last, so that no observer
            // sees a moment with neither the old state nor the new one.
            self->*list.loading = false;
            if (!result.isOk()) {
                self->*list.error = result.error().description;
                emit(self->*list.errorChanged)();
                if (list.failed)
                    (self->*list.failed)(self->*list.error);
            } else {
                (self->*list.loaded)(std::move(result).value());
            }
            emit(self->*list.loadingChanged)();
        });
    });
}

void TodayViewModel::fetchToday()
{
    load({&TodayViewModel::m_isLoading, &TodayViewModel::isLoadingChanged, &TodayViewModel::m_error,
          &TodayViewModel::errorChanged, &APIClient::fetchTodayMatches,
          &TodayViewModel::todayLoaded, &TodayViewModel::todayFailed});
}

void TodayViewModel::fetchFixtures()
{
    load({&TodayViewModel::m_isLoadingFixtures, &TodayViewModel::isLoadingFixturesChanged,
          &TodayViewModel::m_fixturesError, &TodayViewModel::fixturesErrorChanged,
          &APIClient::fetchUpcomingMatches, &TodayViewModel::fixturesLoaded, nullptr});
}

void TodayViewModel::fetchResults()
{
    load({&TodayViewModel::m_isLoadingResults, &TodayViewModel::isLoadingResultsChanged,
          &TodayViewModel::m_resultsError, &TodayViewModel::resultsErrorChanged,
          &APIClient::fetchResultMatches, &TodayViewModel::resultsLoaded, nullptr});
}

void TodayViewModel::todayLoaded(QList<ZelMatch> list)
{
    m_matchStarts = LeagueCalendar::startTimesOf(list);
    m_matches = std::move(list);
    emit matchesChanged();
    m_lastUpdated = m_setup.clock();
    emit lastUpdatedChanged();
    m_todayFailures = 0;
    m_lastTodayFailure.clear();
    prefetchLogos(m_matches);
    updateKnownTeams();
    updateStatusBar();
    refreshLiveScorecards(m_matches);
    scheduleAutoRefresh();
    updateOffline();
}

// One failed reload must not stop the title for good: try again soon, then less and less often.
void TodayViewModel::todayFailed(const QString &description)
{
    ++m_todayFailures;
    const bool newReason = description != m_lastTodayFailure;
    m_lastTodayFailure = description;
    const auto wait = RefreshSchedule::retryAfter(m_todayFailures, m_setup.firstRetry);
    qCDebug(lcRefresh) << "today's matches failed:" << description << "- again in" << wait.count()
                       << "ms";
    m_autoRefreshTimer.start(wait);
    updateOffline(newReason);
}

void TodayViewModel::updateOffline(bool reasonChanged)
{
    const qint64 untilDue = m_lastUpdated.isValid() ? m_setup.clock().msecsTo(m_lastUpdated) +
                                                          (m_refreshInterval + offlineGrace).count()
                                                    : -1;
    const bool stale = m_todayFailures > 0 && untilDue < 0;
    // Failing but not yet out of date: look again the moment it becomes so.
    if (m_todayFailures > 0 && !stale)
        m_offlineDue.start(std::chrono::milliseconds(untilDue + 1));
    else
        m_offlineDue.stop();
    if (stale == m_isOffline && !(stale && reasonChanged))
        return;
    m_isOffline = stale;
    emit offlineChanged();
}

void TodayViewModel::fixturesLoaded(QList<ZelMatch> list)
{
    // From tomorrow on, in the league's calendar, earliest first; equal starts keep their order.
    const QDateTime tomorrow = LeagueCalendar::startOfNextDay(m_setup.clock());
    QList<std::pair<QDateTime, qsizetype>> kept;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const auto start = LeagueCalendar::parseStartTime(list[i].startTime);
        if (start && *start >= tomorrow)
            kept.append({*start, i});
    }
    std::stable_sort(kept.begin(), kept.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<ZelMatch> fixtures;
    m_fixtureStarts.clear();
    for (const auto &[start, index] : kept) {
        fixtures.append(list[index]);
        m_fixtureStarts.append(start);
    }
    m_fixtureMatches = std::move(fixtures);
    emit fixtureMatchesChanged();
    prefetchLogos(list);
    updateKnownTeams();
    updateStatusBar();
}

void TodayViewModel::resultsLoaded(QList<ZelMatch> list)
{
    m_resultMatches = std::move(list);
    emit resultMatchesChanged();
    prefetchLogos(m_resultMatches);
    updateKnownTeams();
    updateStatusBar();
}

void TodayViewModel::fetchScorecard(qint64 matchID)
{
    if (m_loadingScorecards.contains(matchID) || m_scorecards.contains(matchID))
        return;
    m_loadingScorecards.insert(matchID);
    emit loadingScorecardsChanged();
    m_waitingScorecards.append(matchID);
    startScorecardRequests();
}

void TodayViewModel::startScorecardRequests()
{
    while (m_scorecardRequests < maximumScorecardRequests && !m_waitingScorecards.isEmpty()) {
        const qint64 matchID = m_waitingScorecards.takeFirst();
        ++m_scorecardRequests;
        m_client.fetchScorecard(
            matchID, [self = QPointer(this), matchID](Result<ZelScorecard> result) {
                if (!self)
                    return;
                later(self, [self, matchID, result = std::move(result)]() mutable {
                    --self->m_scorecardRequests;
                    // The outcome is in place before the load ends, so that no one sees a
                    // moment with neither (a live card on screen would be made again).
                    const bool isOk = result.isOk();
                    if (isOk)
                        self->m_scorecards.insert(matchID, std::move(result).value());
                    else
                        self->m_scorecardErrors.insert(matchID, result.error().description);
                    self->m_loadingScorecards.remove(matchID);
                    emit self->loadingScorecardsChanged();
                    if (isOk)
                        emit self->scorecardsChanged();
                    else
                        emit self->scorecardErrorsChanged();
                    self->startScorecardRequests();
                });
            });
    }
}

void TodayViewModel::refreshLiveScorecards(const QList<ZelMatch> &list)
{
    qsizetype refetched = 0;
    for (const ZelMatch &match : list) {
        if (!match.isLive() || m_loadingScorecards.contains(match.matchID))
            continue;
        if (++refetched > maximumLiveRefetches)
            break;
        // Told after the fetch has begun, so that no one sees a moment with neither a card
        // nor a load under way.
        const bool hadCard = m_scorecards.remove(match.matchID);
        const bool hadError = m_scorecardErrors.remove(match.matchID);
        fetchScorecard(match.matchID);
        if (hadCard)
            emit scorecardsChanged();
        if (hadError)
            emit scorecardErrorsChanged();
    }
}

void TodayViewModel::prefetchLogos(const QList<ZelMatch> &list)
{
    QList<QUrl> urls;
    urls.reserve(2 * list.size());
    for (const ZelMatch &match : list) {
        for (const auto &url : {match.homeTeamLogoURL(m_setup.serviceURL),
                                match.awayTeamLogoURL(m_setup.serviceURL)}) {
            if (url)
                urls.append(*url);
        }
    }
    m_logos.prefetch(urls);
}

void TodayViewModel::updateStatusBar()
{
    StatusTitle::Line line =
        StatusTitle::compose({m_matches, m_matchStarts}, {m_fixtureMatches, m_fixtureStarts},
                             m_setup.clock(), m_favouriteTeamID);
    if (line == m_statusBar)
        return;
    m_statusBar = std::move(line);
    emit statusBarTitleChanged(m_statusBar.text);
}

std::chrono::milliseconds TodayViewModel::autoRefreshInterval() const
{
    return RefreshSchedule::interval({m_matches, m_matchStarts}, m_setup.clock());
}

void TodayViewModel::scheduleAutoRefresh()
{
    m_autoRefreshTimer.stop();
    m_refreshInterval = autoRefreshInterval();
    qCDebug(lcRefresh) << "today's matches loaded; again in" << m_refreshInterval.count() << "ms";
    m_autoRefreshTimer.start(m_refreshInterval);
}

void TodayViewModel::setFavouriteTeam(const QString &teamID)
{
    m_favouriteTeamID = teamID;
    updateStatusBar();
}

void TodayViewModel::updateKnownTeams()
{
    QList<TeamInfo> teams = TeamInfo::of(m_matches + m_fixtureMatches + m_resultMatches);
    if (teams == m_knownTeams)
        return;
    m_knownTeams = std::move(teams);
    emit knownTeamsChanged();
}

void TodayViewModel::reload()
{
    invalidateAutoRefresh();
    fetchToday();
    fetchFixtures();
}

void TodayViewModel::systemDidWake()
{
    emit resumed();
    resetSleepWatch();
    reload();
}

void TodayViewModel::tick()
{
    const QDateTime now = m_setup.clock();
    const qint64 wallClock = m_lastTickWallClock.msecsTo(now);
    const qint64 monotonic = m_sinceLastTick.elapsed();
    if (m_setup.inferSleepFromClock && wallClock - monotonic > sleepThreshold.count()) {
        systemDidWake();
    } else {
        m_lastTickWallClock = now;
        m_sinceLastTick.restart();
    }
    updateStatusBar();
    updateOffline();
}

void TodayViewModel::resetSleepWatch()
{
    m_lastTickWallClock = m_setup.clock();
    m_sinceLastTick.start();
}
