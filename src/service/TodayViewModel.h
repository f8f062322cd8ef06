#pragma once

#include "APIClient.h"
#include "RefreshSchedule.h"
#include "StatusTitle.h"
#include "TeamInfo.h"
#include "ZelMatch.h"
#include "ZelScorecard.h"

#include <functional>
#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

class ImageCache;

// The application's one state object: the three match lists, their loading and error states,
// the scorecards fetched so far and the status title, kept current by an auto-refresh timer.
// Despite its name it is not what a view binds to: the popover's QML binds to
// PopoverController, which reads this, and the status item shows its title. Everything here
// lives on the main thread.
class TodayViewModel : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;
    using ScorecardMap = QHash<qint64, ZelScorecard>;
    using ErrorMap = QHash<qint64, QString>;
    using IdSet = QSet<qint64>;

    struct Setup {
        QString serviceURL; // origin of the score service
        Clock clock = [] { return QDateTime::currentDateTimeUtc(); };
        ImageCache *logos = nullptr; // the shared cache when not given
        std::chrono::milliseconds requestTimeout = APIClient::defaultTimeout;
        // Where nothing reports a resume from sleep (no system bus), the wall clock running
        // ahead of the monotonic one is taken for one.
        bool inferSleepFromClock = true;
        // The wait after the first failed load of today; it doubles with each further failure.
        std::chrono::milliseconds firstRetry = RefreshSchedule::live;
    };

    static constexpr std::chrono::milliseconds tickInterval{60'000};
    // A wall clock that ran this much further than the monotonic one means the machine slept.
    static constexpr std::chrono::milliseconds sleepThreshold{30'000};
    // Today's data counts as out of date this long after its next refresh was due.
    static constexpr std::chrono::milliseconds offlineGrace{60'000};
    // A list full of live matches must not turn into a flood of scorecard requests.
    static constexpr qsizetype maximumScorecardRequests = 4;
    static constexpr qsizetype maximumLiveRefetches = 8;

    // Starts loading today's matches and the fixtures at once.
    explicit TodayViewModel(Setup setup, QObject *parent = nullptr);

    const QList<ZelMatch> &matches() const { return m_matches; }
    const QList<ZelMatch> &fixtureMatches() const { return m_fixtureMatches; }
    const QList<ZelMatch> &resultMatches() const { return m_resultMatches; }
    bool isLoading() const { return m_isLoading; }
    bool isLoadingFixtures() const { return m_isLoadingFixtures; }
    bool isLoadingResults() const { return m_isLoadingResults; }
    // Error texts are empty while there is no error.
    const QString &error() const { return m_error; }
    const QString &fixturesError() const { return m_fixturesError; }
    const QString &resultsError() const { return m_resultsError; }
    // The title with what it reports (live, delayed, neither).
    const StatusTitle::Line &statusBarTitle() const { return m_statusBar; }
    const QDateTime &lastUpdated() const { return m_lastUpdated; }
    QString competitionName() const { return QStringLiteral("Zel 2026"); }
    const ScorecardMap &scorecards() const { return m_scorecards; }
    const ErrorMap &scorecardErrors() const { return m_scorecardErrors; }
    const IdSet &loadingScorecards() const { return m_loadingScorecards; }
    // Today's matches could not be reloaded for longer than their refresh interval and a
    // minute; the reason is the last failure's description.
    // The state object's own clock: the views date themselves by it.
    QDateTime now() const { return m_setup.clock(); }
    bool isOffline() const { return m_isOffline; }
    const QString &offlineReason() const { return m_lastTodayFailure; }

    // Every side the three lists have named so far, by name.
    const QList<TeamInfo> &knownTeams() const { return m_knownTeams; }
    // The title names this team's match where its rules could name several.
    void setFavouriteTeam(const QString &teamID);

    bool isAutoRefreshPending() const { return m_autoRefreshTimer.isActive(); }
    std::chrono::milliseconds autoRefreshInterval() const;

public slots:
    void fetchToday();
    void fetchFixtures();
    void fetchResults();
    void fetchScorecard(qint64 matchID);
    void updateStatusBar();
    void scheduleAutoRefresh();
    // Stops the pending auto-refresh.
    void invalidateAutoRefresh() { m_autoRefreshTimer.stop(); }
    // Today and the fixtures again, now, for the refresh button and a wake: the pending
    // automatic reload is dropped.
    void reload();
    // The machine resumed from sleep.
    void systemDidWake();
    // Every 60 seconds: keeps countdowns current and notices a sleep the system did not report.
    void tick();

signals:
    void matchesChanged();
    void fixtureMatchesChanged();
    void resultMatchesChanged();
    void isLoadingChanged();
    void isLoadingFixturesChanged();
    void isLoadingResultsChanged();
    void errorChanged();
    void fixturesErrorChanged();
    void resultsErrorChanged();
    void statusBarTitleChanged(const QString &title);
    void lastUpdatedChanged();
    void scorecardsChanged();
    void scorecardErrorsChanged();
    void loadingScorecardsChanged();
    void offlineChanged();
    void knownTeamsChanged();
    // The machine woke: what today's next load shows was not seen happening.
    void resumed();

private:
    struct ListLoad;
    void load(const ListLoad &list);
    void refreshLiveScorecards(const QList<ZelMatch> &list);
    void prefetchLogos(const QList<ZelMatch> &list);
    void todayLoaded(QList<ZelMatch> list);
    void fixturesLoaded(QList<ZelMatch> list);
    void resultsLoaded(QList<ZelMatch> list);
    void todayFailed(const QString &description);
    void updateOffline(bool reasonChanged = false);
    void startScorecardRequests();
    void resetSleepWatch();
    void updateKnownTeams();

    Setup m_setup;
    APIClient m_client;
    ImageCache &m_logos;

    QList<ZelMatch> m_matches;
    QList<std::optional<QDateTime>> m_matchStarts;
    QList<ZelMatch> m_fixtureMatches;
    QList<std::optional<QDateTime>> m_fixtureStarts;
    QList<ZelMatch> m_resultMatches;
    bool m_isLoading = false;
    bool m_isLoadingFixtures = false;
    bool m_isLoadingResults = false;
    QString m_error;
    QString m_fixturesError;
    QString m_resultsError;
    StatusTitle::Line m_statusBar{StatusTitle::bat};
    QString m_favouriteTeamID;
    QList<TeamInfo> m_knownTeams;
    QDateTime m_lastUpdated;
    ScorecardMap m_scorecards;
    ErrorMap m_scorecardErrors;
    IdSet m_loadingScorecards; // in flight or waiting for a free request
    QList<qint64> m_waitingScorecards;
    qsizetype m_scorecardRequests = 0;

    int m_todayFailures = 0; // in a row
    QString m_lastTodayFailure;
    std::chrono::milliseconds m_refreshInterval{0}; // chosen after the last success
    bool m_isOffline = false;

    QTimer m_autoRefreshTimer;
    QTimer m_ticker;
    QTimer m_offlineDue;
    QDateTime m_lastTickWallClock;
    QElapsedTimer m_sinceLastTick; // monotonic: stands still while the machine sleeps
};
