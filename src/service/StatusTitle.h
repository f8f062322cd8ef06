#pragma once

#include "ZelMatch.h"

#include <optional>
#include <QCoreApplication>
#include <QDateTime>
#include <QList>

// The one line the status item shows, always starting with the cricket bat.
class StatusTitle {
    Q_DECLARE_TR_FUNCTIONS(StatusTitle)

public:
    static inline const QString bat = QStringLiteral("\U0001F3CF");
    // What every composed title, and the popover's own title, starts with.
    static inline const QString prefix = bat + QStringLiteral("  ");
    // Past any real result sentence, a bound only against hostile comments.
    static constexpr qsizetype maximumLength = 160;

    // What the title reports, for icons that mark it: a live match, a delayed start, or neither.
    enum class State { Quiet, Live, Delayed };
    struct Line {
        QString text;
        State state = State::Quiet;
        friend bool operator==(const Line &, const Line &) = default;
    };

    // A list of matches together with their parsed start times, index for index.
    struct Schedule {
        const QList<ZelMatch> &matches;
        const QList<std::optional<QDateTime>> &starts;
    };

    // The first rule that applies: live, delayed, next start today, today's result, next
    // fixture, idle; on one line, cut to the maximum length. Where a rule could name several
    // matches and one of them is the favourite team's, it names that one.
    static Line compose(Schedule today, Schedule fixtures, const QDateTime &now,
                        const QString &favouriteTeamID = {});

    static QString liveStatusBarText(const ZelMatch &match);
    static QString shortScoreWithOvers(const QString &summary);
    static std::optional<QString> shortTossText(const ZelMatch &match);
    static QString countdown(const QDateTime &start, const QDateTime &now);
    // What the title shows only by its red circle, in words for a tool tip and a screen reader;
    // the offline note after it.
    static QString inWords(const Line &title, const QString &offlineNote);
    // The title as a screen reader should say it: without the bat and the red circle, its
    // state in words first ("Live: NTH 45/2 (6.3)"); empty for the bat alone.
    static QString spoken(const Line &title);

private:
    static Line composeByRules(Schedule today, Schedule fixtures, const QDateTime &now,
                               const QString &favouriteTeamID);
};
