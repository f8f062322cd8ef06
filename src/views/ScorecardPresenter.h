#pragma once

#include "ZelMatch.h"
#include "ZelScorecard.h"

#include <optional>
#include <QCoreApplication>

// The scorecard's innings tabs, total line and the marks of its batting and bowling tables.
class ScorecardPresenter {
    Q_DECLARE_TR_FUNCTIONS(ScorecardPresenter)

public:
    enum class BatsmanState { Striker, NonStriker, Out, Waiting, NotOut, DidNotBat };
    enum class Side { Home, Away };

    // A live match opens on the innings in progress, anything else on the first.
    static int initialInnings(const ZelMatch &match);
    static QString tab1Label(const ZelMatch &match);
    static QString tab2Label(const ZelMatch &match);
    // Live without any score, whatever the toss text says: before the first ball the card shows
    // who bats first even when the toss text is missing, unlike the row's rule of this name.
    static bool isTossPhase(const ZelMatch &match);
    // The side shown as "Yet to bat" on a tab, or nothing when the tab shows an innings.
    static std::optional<Side> yetToBat(const ZelMatch &match, const ZelScorecard &scorecard,
                                        int selectedInnings);

    struct TotalLine {
        QString score;                // empty: no total line
        std::optional<QString> overs; // shown in parentheses
    };
    static TotalLine totalLine(const ZelMatch &match, int inningsIndex);

    static BatsmanState batsmanState(const ZelMatch &match, const ZelBattingEntry &entry,
                                     qint64 inningsNo);
    static bool isCurrentBowler(const ZelMatch &match, const ZelBowlingEntry &entry);
    // A wicket column reading 1 or more stands out; nought or nonsense recedes.
    static bool tookWickets(const ZelBowlingEntry &entry);

    // A scorecard line as a commentator would say it: the player, the marks and the state in
    // words, then each figure with its name ("Sameer Khan, captain, not out: 32 runs from 27
    // balls, 3 fours, 1 six, strike rate 119"; "Liam Iyer, yet to bat").
    static QString spokenBatting(const ZelBattingEntry &entry, BatsmanState state);
    static QString spokenBowling(const ZelBowlingEntry &entry, bool bowlingNow);

private:
    // The name, then its marks in words: "Arjun Mehta (c)" is "Arjun Mehta, captain".
    static QString spokenName(const QString &name);
};
