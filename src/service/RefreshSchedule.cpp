#include "RefreshSchedule.h"

#include "SpacesAndTabs.h"

#include <algorithm>

std::chrono::milliseconds RefreshSchedule::interval(StatusTitle::Schedule today,
                                                    const QDateTime &now)
{
    for (const ZelMatch &match : today.matches) {
        if (match.isLive())
            return live;
    }
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (today.matches[i].isUpcoming() && start && now.msecsTo(*start) < lead.count())
            return live;
    }
    for (const ZelMatch &match : today.matches) {
        if (match.isUpcoming() && !trimSpacesAndTabs(match.comments).isEmpty())
            return notice;
    }
    std::chrono::milliseconds wait = longest;
    for (qsizetype i = 0; i < today.matches.size(); ++i) {
        const auto &start = today.starts[i];
        if (!today.matches[i].isUpcoming() || !start)
            continue;
        const std::chrono::milliseconds untilLead{now.msecsTo(*start) - lead.count()};
        if (untilLead.count() > 0)
            wait = std::min(wait, untilLead);
    }
    return wait;
}

std::chrono::milliseconds RefreshSchedule::retryAfter(int failures, std::chrono::milliseconds first)
{
    std::chrono::milliseconds wait = first;
    for (int i = 1; i < failures && wait < longest; ++i)
        wait *= 2;
    return std::min(wait, longest);
}
