#include "ScorecardModel.h"

#include "PopoverController.h"
#include "ScorecardPresenter.h"
#include "TodayViewModel.h"

void ScorecardModel::setController(PopoverController *controller)
{
    if (controller == m_controller)
        return;
    disconnect(m_connection);
    m_controller = controller;
    if (controller)
        m_connection = connect(controller, &PopoverController::scorecardsChanged, this,
                               &ScorecardModel::update);
    emit controllerChanged();
    update();
}

void ScorecardModel::setMatchKey(const QString &key)
{
    if (key == m_matchKey)
        return;
    m_matchKey = key;
    emit matchKeyChanged();
    update();
}

void ScorecardModel::setChosenInnings(int innings)
{
    innings = qMax(-1, innings);
    if (innings == m_chosenInnings)
        return;
    m_chosenInnings = innings;
    emit chosenInningsChanged();
    update();
}

void ScorecardModel::update()
{
    bool isNumber = false;
    const qint64 matchID = m_matchKey.toLongLong(&isNumber);
    const ZelMatch *match = m_controller && isNumber ? m_controller->findMatch(matchID) : nullptr;
    if (!match)
        return;
    const int innings =
        m_chosenInnings >= 0 ? m_chosenInnings : ScorecardPresenter::initialInnings(*match);
    if (innings != m_selectedInnings) {
        m_selectedInnings = innings;
        emit selectedInningsChanged();
    }
    const TodayViewModel &vm = m_controller->viewModel();
    const auto card = vm.scorecards().constFind(matchID);
    m_error.clear();
    // A card beats an error kept from an earlier attempt: the card came from the later answer
    // (the state object keeps the error until the next reload), so it is what is true now.
    if (card != vm.scorecards().cend()) {
        m_state = Popover::Card::Ready;
        showInnings(*match, *card);
    } else if (vm.loadingScorecards().contains(matchID)) {
        // A live card being fetched again keeps showing the last one meanwhile.
        if (m_state != Popover::Card::Ready)
            m_state = Popover::Card::Loading;
    } else if (vm.scorecardErrors().contains(matchID)) {
        m_state = Popover::Card::Error;
        m_error = QStringLiteral("\u26A0\uFE0F ") + vm.scorecardErrors().value(matchID);
    } else {
        m_state = Popover::Card::None;
    }
    emit changed();
}

void ScorecardModel::showInnings(const ZelMatch &match, const ZelScorecard &card)
{
    m_inningsLabels = {ScorecardPresenter::tab1Label(match), ScorecardPresenter::tab2Label(match)};
    const auto side = ScorecardPresenter::yetToBat(match, card, m_selectedInnings);
    m_yetToBat = side.has_value();
    if (side) {
        const bool home = *side == ScorecardPresenter::Side::Home;
        m_yetToBatName = home ? match.homeTeamName : match.awayTeamName;
        const QString &origin = m_controller->serviceURL();
        m_yetToBatLogo =
            (home ? match.homeTeamLogoURL(origin) : match.awayTeamLogoURL(origin)).value_or(QUrl());
        m_score.clear();
        m_overs.clear();
        m_batting.setRows({});
        m_bowling.setRows({});
        return;
    }
    const ZelInnings &innings = card.innings.at(m_selectedInnings);
    const auto total = ScorecardPresenter::totalLine(match, m_selectedInnings);
    m_score = total.score;
    m_overs = total.overs.value_or(QString());
    using State = ScorecardPresenter::BatsmanState;
    QList<ScoreTableModel::Row> batting;
    for (const ZelBattingEntry &entry : innings.batting) {
        const State state = ScorecardPresenter::batsmanState(match, entry, innings.inningsNo);
        batting.append(
            {.name = entry.name,
             .figures = {entry.runs, entry.balls, entry.fours, entry.sixes, entry.strikeRate},
             .strong =
                 state == State::Striker || state == State::NonStriker || state == State::NotOut,
             .dim = state == State::Out || state == State::Waiting || state == State::DidNotBat,
             .placeholder = state == State::Waiting     ? QStringLiteral("\u2014")
                            : state == State::DidNotBat ? tr("DNB", "did not bat")
                                                        : QString(),
             .spoken = ScorecardPresenter::spokenBatting(entry, state),
             .tookWickets = false});
    }
    QList<ScoreTableModel::Row> bowling;
    for (const ZelBowlingEntry &entry : innings.bowling) {
        const bool bowlingNow = ScorecardPresenter::isCurrentBowler(match, entry);
        bowling.append(
            {.name = entry.name,
             .figures = {entry.overs, entry.maidens, entry.runs, entry.wickets, entry.economy},
             .strong = bowlingNow,
             .dim = false,
             .placeholder = {},
             .spoken = ScorecardPresenter::spokenBowling(entry, bowlingNow),
             .tookWickets = ScorecardPresenter::tookWickets(entry)});
    }
    m_batting.setRows(std::move(batting));
    m_bowling.setRows(std::move(bowling));
}
