#pragma once

#include "ZelMatch.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>

// What happened between two loads of today's matches: a match started, a wicket fell, a match
// ended. The first load after start-up or a wake only sets what is known; an event is told
// once however the data goes back and forth, and a match gives at most one event per load.
class MatchEvents {
    Q_DECLARE_TR_FUNCTIONS(MatchEvents)

public:
    enum class Kind { Started, Wicket, Finished };

    struct Event {
        Kind kind;
        ZelMatch match;
        QString title;
        QString body;
    };

    // Which events the user wants, and for which team (empty: every match).
    struct Wanted {
        bool starts = false;
        bool wickets = false;
        bool results = false;
        QString teamID;
    };

    // The next load is taken as it is, without events.
    void rebase() { m_rebase = true; }
    QList<Event> compare(const QList<ZelMatch> &today, const Wanted &wanted);

    // The wickets in a batting summary ("45/3 (6.3 Ov)" gives 3); -1 when it does not say.
    static int wicketsIn(const QString &summary);

private:
    struct Known {
        bool started = false;
        bool finished = false;
        int wickets[2] = {0, 0}; // the most seen, by innings
    };
    static Event describe(Kind kind, const ZelMatch &match);

    QHash<qint64, Known> m_known;
    bool m_rebase = true;
};
