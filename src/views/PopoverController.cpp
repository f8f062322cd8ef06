#include "PopoverController.h"

#include "DisplayText.h"
#include "Preferences.h"
#include "StatusTitle.h"
#include "TodayViewModel.h"

#include <QGuiApplication>

PopoverController::PopoverController(TodayViewModel &vm, const QString &serviceURL,
                                     Preferences *preferences,
                                     SettingsController::LoginSwitch login, QObject *parent)
    : QObject(parent)
    , m_vm(vm)
    , m_serviceURL(serviceURL)
    , m_today(MatchListModel::Kind::Today, serviceURL)
    , m_results(MatchListModel::Kind::Results, serviceURL)
    , m_fixtures(MatchListModel::Kind::Fixtures, serviceURL)
    , m_resultsTab(Popover::Tab::Results, m_results)
    , m_todayTab(Popover::Tab::Today, m_today)
    , m_fixturesTab(Popover::Tab::Fixtures, m_fixtures)
    , m_preferences(preferences)
{
    if (preferences) {
        m_settings =
            std::make_unique<SettingsController>(*preferences, vm, serviceURL, std::move(login));
        connect(preferences, &Preferences::favouriteChanged, this,
                &PopoverController::showFavourite);
        showFavourite();
    }
    m_today.setMatches(vm.matches());
    m_results.setMatches(vm.resultMatches());
    m_fixtures.setMatches(vm.fixtureMatches());
    showTabs();
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
          &TodayViewModel::matchesChanged, &TodayViewModel::resultMatchesChanged,
          &TodayViewModel::fixtureMatchesChanged})
        connect(&vm, signal, this, &PopoverController::showTabs);
    connect(&vm, &TodayViewModel::isLoadingChanged, this, &PopoverController::announceRefreshed);
    for (auto signal : {&TodayViewModel::lastUpdatedChanged, &TodayViewModel::offlineChanged})
        connect(&vm, signal, this, &PopoverController::headerChanged);
    for (auto signal : {&TodayViewModel::scorecardsChanged, &TodayViewModel::scorecardErrorsChanged,
                        &TodayViewModel::loadingScorecardsChanged, &TodayViewModel::matchesChanged,
                        &TodayViewModel::resultMatchesChanged})
        connect(&vm, signal, this, &PopoverController::scorecardsChanged);
}

void PopoverController::showFavourite()
{
    const QString teamID = m_preferences->favouriteTeamID();
    for (MatchListModel *list : {&m_today, &m_results, &m_fixtures})
        list->setFavouriteTeam(teamID);
}

void PopoverController::setSettingsOpen(bool open)
{
    open = open && m_settings;
    if (open == m_settingsOpen)
        return;
    m_settingsOpen = open;
    emit settingsOpenChanged();
}

void PopoverController::showTabs()
{
    m_todayTab.show(m_vm.isLoading(), m_vm.error(), m_vm.matches().isEmpty());
    m_resultsTab.show(m_vm.isLoadingResults(), m_vm.resultsError(), m_vm.resultMatches().isEmpty());
    m_fixturesTab.show(m_vm.isLoadingFixtures(), m_vm.fixturesError(),
                       m_vm.fixtureMatches().isEmpty());
}

PopoverTab &PopoverController::tab(Popover::Tab tab)
{
    switch (tab) {
    case Popover::Tab::Results:
        return m_resultsTab;
    case Popover::Tab::Fixtures:
        return m_fixturesTab;
    case Popover::Tab::Today:
        break;
    }
    return m_todayTab;
}

void PopoverController::setActiveTab(Popover::Tab tab)
{
    if (tab == m_activeTab || !TodayPresenter::allTabs.contains(tab))
        return;
    m_activeTab = tab;
    emit activeTabChanged();
    // Results reload on every visit; fixtures only while there are none.
    if (tab == Popover::Tab::Results && !m_vm.isLoadingResults())
        m_vm.fetchResults();
    if (tab == Popover::Tab::Fixtures && m_vm.fixtureMatches().isEmpty() &&
        !m_vm.isLoadingFixtures())
        m_vm.fetchFixtures();
}

QStringList PopoverController::tabLabels() const
{
    QStringList labels;
    for (Popover::Tab tab : TodayPresenter::allTabs)
        labels.append(TodayPresenter::label(tab));
    return labels;
}

bool PopoverController::mirrored()
{
    return QGuiApplication::isRightToLeft();
}

QString PopoverController::title() const
{
    return StatusTitle::prefix + m_vm.competitionName();
}

QString PopoverController::todayLabel() const
{
    return TodayPresenter::todayLabel(m_vm.now(), QTimeZone::systemTimeZone(), QLocale::system());
}

QString PopoverController::updatedLabel() const
{
    return TodayPresenter::updatedLabel(m_vm.lastUpdated(), m_vm.isOffline(),
                                        QTimeZone::systemTimeZone());
}

QString PopoverController::offlineReason() const
{
    return m_vm.isOffline() ? boundedForDisplay(m_vm.offlineReason(), 200) : QString();
}

void PopoverController::opening()
{
    emit headerChanged(); // a new day may have begun while it was closed
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    if (zone == m_timeZone)
        return;
    m_timeZone = zone;
    for (MatchListModel *model : {&m_today, &m_results, &m_fixtures})
        model->timeZoneChanged();
}

void PopoverController::refresh()
{
    m_refreshAsked = true;
    m_vm.reload();
    announceRefreshed(); // a reload already under way settles with no news of its own
}

void PopoverController::announceRefreshed()
{
    if (!m_refreshAsked || m_vm.isLoading())
        return;
    m_refreshAsked = false;
    const QString updated = updatedLabel();
    if (updated.isEmpty())
        emit announcement(m_todayTab.message());
    else if (offlineReason().isEmpty())
        emit announcement(updated);
    else
        emit announcement(tr("%1. %2").arg(updated, offlineReason()));
}

QString PopoverController::headline() const
{
    QStringList parts{TodayPresenter::label(m_activeTab),
                      StatusTitle::spoken(m_vm.statusBarTitle()), updatedLabel()};
    parts.removeAll(QString());
    return parts.join(tr(". "));
}

void PopoverController::retry(Popover::Tab tab)
{
    if (tab == Popover::Tab::Results)
        m_vm.fetchResults();
    else if (tab == Popover::Tab::Fixtures)
        m_vm.fetchFixtures();
    else
        refresh();
}

bool PopoverController::retryIfFailed()
{
    if (tab(m_activeTab).content() != Popover::Content::Error)
        return false;
    retry(m_activeTab);
    return true;
}

void PopoverController::scorecardWanted(const QString &matchKey)
{
    bool isNumber = false;
    const qint64 matchID = matchKey.toLongLong(&isNumber);
    if (isNumber && !m_vm.scorecards().contains(matchID))
        m_vm.fetchScorecard(matchID);
}

const ZelMatch *PopoverController::findMatch(qint64 matchID) const
{
    if (const ZelMatch *match = m_today.matchWithID(matchID))
        return match;
    return m_results.matchWithID(matchID);
}
