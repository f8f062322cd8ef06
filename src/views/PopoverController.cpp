#include "PopoverController.h"

#include "DisplayText.h"
#include "ScorecardPresenter.h"
#include "TodayViewModel.h"

#include <QVariantList>

namespace {

TodayPresenter::AppTab appTab(int tab)
{
    return TodayPresenter::allTabs.value(tab);
}

} // namespace

PopoverController::PopoverController(TodayViewModel &vm, const QString &serviceURL, QObject *parent)
    : QObject(parent)
    , m_vm(vm)
    , m_serviceURL(serviceURL)
    , m_today(MatchListModel::Kind::Today, serviceURL)
    , m_results(MatchListModel::Kind::Results, serviceURL)
    , m_fixtures(MatchListModel::Kind::Fixtures, serviceURL)
{
    m_today.setMatches(vm.matches());
    m_results.setMatches(vm.resultMatches());
    m_fixtures.setMatches(vm.fixtureMatches());
    connect(&vm, &TodayViewModel::matchesChanged, this,
            [this] { m_today.setMatches(m_vm.matches()); });
    connect(&vm, &TodayViewModel::resultMatchesChanged, this,
            [this] { m_results.setMatches(m_vm.resultMatches()); });
    connect(&vm, &TodayViewModel::fixtureMatchesChanged, this,
            [this] { m_fixtures.setMatches(m_vm.fixtureMatches()); });
    for (auto signal :
         {&TodayViewModel::isLoadingChanged, &TodayViewModel::isLoadingFixturesChanged,
          &TodayViewModel::isLoadingResultsChanged, &TodayViewModel::errorChanged,
          &TodayViewModel::fixturesErrorChanged, &TodayViewModel::resultsErrorChanged,
          &TodayViewModel::lastUpdatedChanged, &TodayViewModel::scorecardsChanged,
          &TodayViewModel::scorecardErrorsChanged, &TodayViewModel::loadingScorecardsChanged,
          &TodayViewModel::matchesChanged, &TodayViewModel::resultMatchesChanged,
          &TodayViewModel::fixtureMatchesChanged, &TodayViewModel::offlineChanged})
        connect(&vm, signal, this, &PopoverController::bump);
}

void PopoverController::bump()
{
    ++m_revision;
    emit revisionChanged();
}

void PopoverController::setActiveTab(int tab)
{
    if (tab == m_activeTab || tab < Results || tab > Fixtures)
        return;
    m_activeTab = tab;
    emit activeTabChanged();
    // Results reload on every visit; fixtures only while there are none.
    if (tab == Results && !m_vm.isLoadingResults())
        m_vm.fetchResults();
    if (tab == Fixtures && m_vm.fixtureMatches().isEmpty() && !m_vm.isLoadingFixtures())
        m_vm.fetchFixtures();
}

QString PopoverController::title() const
{
    return QStringLiteral("\U0001F3CF  ") + m_vm.competitionName();
}

int PopoverController::content(int tab, int) const
{
    switch (tab) {
    case Results:
        return int(TodayPresenter::content(m_vm.isLoadingResults(), m_vm.resultsError(),
                                           m_vm.resultMatches().isEmpty()));
    case Fixtures:
        return int(TodayPresenter::content(m_vm.isLoadingFixtures(), m_vm.fixturesError(),
                                           m_vm.fixtureMatches().isEmpty()));
    default:
        return int(
            TodayPresenter::content(m_vm.isLoading(), m_vm.error(), m_vm.matches().isEmpty()));
    }
}

QString PopoverController::message(int tab, int revision) const
{
    const QString &error = tab == Results    ? m_vm.resultsError()
                           : tab == Fixtures ? m_vm.fixturesError()
                                             : m_vm.error();
    switch (Content(content(tab, revision))) {
    case Loading:
        return TodayPresenter::loadingText(appTab(tab));
    case Error:
        return TodayPresenter::errorText(error);
    case Empty:
        return TodayPresenter::emptyText(appTab(tab));
    case List:
        break;
    }
    return QString();
}

QString PopoverController::todayLabel(int) const
{
    return TodayPresenter::todayLabel(QDateTime::currentDateTime(), QTimeZone::systemTimeZone(),
                                      QLocale::system());
}

QString PopoverController::updatedLabel(int) const
{
    return TodayPresenter::updatedLabel(m_vm.lastUpdated(), m_vm.isOffline(),
                                        QTimeZone::systemTimeZone());
}

QString PopoverController::offlineReason(int) const
{
    return m_vm.isOffline() ? boundedForDisplay(m_vm.offlineReason(), 200) : QString();
}

void PopoverController::followTimeZone()
{
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    if (zone == m_timeZone)
        return;
    m_timeZone = zone;
    for (MatchListModel *model : {&m_today, &m_results, &m_fixtures})
        model->timeZoneChanged();
    bump();
}

void PopoverController::refresh()
{
    m_vm.invalidateAutoRefresh();
    m_vm.fetchToday();
    m_vm.fetchFixtures();
}

void PopoverController::retry(int tab)
{
    if (tab == Results)
        m_vm.fetchResults();
    else if (tab == Fixtures)
        m_vm.fetchFixtures();
    else
        refresh();
}

bool PopoverController::retryIfFailed()
{
    if (content(m_activeTab, m_revision) != Error)
        return false;
    retry(m_activeTab);
    return true;
}

void PopoverController::scorecardWanted(qint64 matchID)
{
    if (!m_vm.scorecards().contains(matchID))
        m_vm.fetchScorecard(matchID);
}

QVariantMap PopoverController::scorecardContent(qint64 matchID, int) const
{
    if (m_vm.loadingScorecards().contains(matchID))
        return {{"state", "loading"}};
    if (m_vm.scorecardErrors().contains(matchID))
        return {{"state", "error"},
                {"error", QStringLiteral("\u26A0\uFE0F ") + m_vm.scorecardErrors().value(matchID)}};
    if (m_vm.scorecards().contains(matchID))
        return {{"state", "card"}};
    return {{"state", "none"}};
}

const ZelMatch *PopoverController::findMatch(qint64 matchID) const
{
    if (const ZelMatch *match = m_today.matchWithID(matchID))
        return match;
    return m_results.matchWithID(matchID);
}

int PopoverController::initialInnings(qint64 matchID) const
{
    const ZelMatch *match = findMatch(matchID);
    return match ? ScorecardPresenter::initialInnings(*match) : 0;
}

QVariantMap PopoverController::inningsView(qint64 matchID, int selected, int) const
{
    const ZelMatch *match = findMatch(matchID);
    const auto card = m_vm.scorecards().constFind(matchID);
    if (!match || card == m_vm.scorecards().cend())
        return {};
    selected = qMax(0, selected);
    QVariantMap view{{"tab1", ScorecardPresenter::tab1Label(*match)},
                     {"tab2", ScorecardPresenter::tab2Label(*match)}};
    if (const auto side = ScorecardPresenter::yetToBat(*match, *card, selected)) {
        const bool home = *side == ScorecardPresenter::Side::Home;
        view.insert(
            "yetToBat",
            QVariantMap{{"name", home ? match->homeTeamName : match->awayTeamName},
                        {"logo", ZelMatch::logoURL(home ? match->homeTeamLogo : match->awayTeamLogo,
                                                   m_serviceURL)
                                     .value_or(QUrl())}});
        return view;
    }
    const ZelInnings &innings = card->innings.at(selected);
    const auto total = ScorecardPresenter::totalLine(*match, selected);
    view.insert("score", total.score);
    view.insert("overs", total.overs.value_or(QString()));
    QVariantList batting;
    for (const ZelBattingEntry &entry : innings.batting) {
        const auto state = ScorecardPresenter::batsmanState(*match, entry, innings.inningsNo);
        using S = ScorecardPresenter::BatsmanState;
        batting.append(QVariantMap{
            {"name", entry.name},
            {"runs", entry.runs},
            {"balls", entry.balls},
            {"fours", entry.fours},
            {"sixes", entry.sixes},
            {"strikeRate", entry.strikeRate},
            {"emphasised", state == S::Striker || state == S::NonStriker || state == S::NotOut},
            {"dimmed", state == S::Out || state == S::Waiting || state == S::DidNotBat},
            {"placeholder", state == S::Waiting     ? QStringLiteral("\u2014")
                            : state == S::DidNotBat ? QStringLiteral("DNB")
                                                    : QString()}});
    }
    QVariantList bowling;
    for (const ZelBowlingEntry &entry : innings.bowling) {
        bowling.append(QVariantMap{{"name", entry.name},
                                   {"overs", entry.overs},
                                   {"maidens", entry.maidens},
                                   {"runs", entry.runs},
                                   {"wickets", entry.wickets},
                                   {"economy", entry.economy},
                                   {"current", ScorecardPresenter::isCurrentBowler(*match, entry)},
                                   {"tookWickets", ScorecardPresenter::tookWickets(entry)}});
    }
    view.insert("batting", batting);
    view.insert("bowling", bowling);
    return view;
}
