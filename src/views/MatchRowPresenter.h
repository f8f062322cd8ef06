#pragma once

#include "ZelMatch.h"

#include <optional>
#include <QCoreApplication>
#include <QLocale>
#include <QTimeZone>

// Every text the today, result and fixture rows show, decided here so that QML only binds.
class MatchRowPresenter {
    Q_DECLARE_TR_FUNCTIONS(MatchRowPresenter)

public:
    // "7:30 PM" in the given zone, or "TBD" without a readable start.
    static QString displayTime(const ZelMatch &match, const QTimeZone &zone, const QLocale &locale);

    static QString statusIcon(const ZelMatch &match);
    // No score on either side yet but a toss text to show. The scorecard has its own rule of
    // this name, which needs the match live and ignores the toss text.
    static bool isTossPhase(const ZelMatch &match);
    // "NTH won, elected to field", naming the toss winner by batting order.
    static std::optional<QString> shortTossText(const ZelMatch &match);
    static QString centreText(const ZelMatch &match, const QTimeZone &zone, const QLocale &locale);
    static std::optional<QString> centreSubText(const ZelMatch &match);

    // The result row's score line, in home/away order.
    static QString scoresText(const ZelMatch &match);
    // The fixture row's venue: ground and city, or the ground alone.
    static QString venueText(const ZelMatch &match);
    // Only finished today rows open on a tap; result rows always do.
    static bool opensOnTap(const ZelMatch &match);
    // The row as a screen reader says it: its state in a word, then the match in a sentence,
    // e.g. "Live: Northport 96 for 2 in 11.3 overs, chasing 188 against Southshore".
    static QString spokenText(const ZelMatch &match, const QTimeZone &zone, const QLocale &locale);
};
