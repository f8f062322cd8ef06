#include "RefreshSchedule.h"

#include "SpacesAndTabs.h"

std::chrono::milliseconds RefreshSchedule::interval(StatusTitle::Schedule today,
                                                    const QDateTime &now)
{
    const auto isUpcoming = [](const ZelMatch &m) {
        return m.matchStatus == QLatin1StringView("upcoming");
    };
    for (const ZelMatch &match : today.matches) {
        if (match.matchStatus == QLatin1StringView("live"))
            return live;
    }
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (isUpcoming(today.matches[i]) && start && now.msecsTo(*start) < lead.count())
            return live;
    }
    for (const ZelMatch &match : today.matches) {
        if (isUpcoming(match) && !trimSpacesAndTabs(match.comments).isEmpty())
            return notice;
    }
    std::chrono::milliseconds wait = longest;
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (!isUpcoming(today.matches[i]) || !start)
            continue;
        const std::chrono::milliseconds untilLead{now.msecsTo(*start) - lead.count()};
        if (untilLead.count() > 0)
            wait = std::min(wait, untilLead);
    }
    return wait;
}
