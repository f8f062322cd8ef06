#include "TodayPresenter.h"

#include "LeagueCalendar.h"

#include <algorithm>
#include <QMap>

const QList<TodayPresenter::AppTab> TodayPresenter::allTabs{AppTab::Results, AppTab::Today,
                                                            AppTab::Fixtures};

namespace {

struct TabTexts {
    const char *label;
    const char *loading;
    const char *empty;
};

// Indexed by AppTab.
const TabTexts tabTexts[] = {
    {QT_TRANSLATE_NOOP("TodayPresenter", "Results"),
     QT_TRANSLATE_NOOP("TodayPresenter", "Loading results…"),
     QT_TRANSLATE_NOOP("TodayPresenter", "No results yet")},
    {QT_TRANSLATE_NOOP("TodayPresenter", "Today"),
     QT_TRANSLATE_NOOP("TodayPresenter", "Loading today's matches…"),
     QT_TRANSLATE_NOOP("TodayPresenter", "No Zel matches today")},
    {QT_TRANSLATE_NOOP("TodayPresenter", "Fixtures"),
     QT_TRANSLATE_NOOP("TodayPresenter", "Loading fixtures…"),
     QT_TRANSLATE_NOOP("TodayPresenter", "No upcoming fixtures")},
};

const TabTexts &textsOf(TodayPresenter::AppTab tab)
{
    return tabTexts[int(tab)];
}

} // namespace

QString TodayPresenter::label(AppTab tab)
{
    return tr(textsOf(tab).label);
}

Popover::Content TodayPresenter::content(bool loading, const QString &error, bool listEmpty)
{
    using Content = Popover::Content;
    if (loading && listEmpty)
        return Content::Loading;
    if (!error.isEmpty() && listEmpty)
        return Content::Error;
    return listEmpty ? Content::Empty : Content::List;
}

QString TodayPresenter::loadingText(AppTab tab)
{
    return tr(textsOf(tab).loading);
}

QString TodayPresenter::emptyText(AppTab tab)
{
    return tr(textsOf(tab).empty);
}

QString TodayPresenter::errorText(const QString &error)
{
    return QStringLiteral("\u26A0\uFE0F  ") + error;
}

QList<TodayPresenter::MatchGroup> TodayPresenter::grouped(const QList<ZelMatch> &matches,
                                                          bool ascending)
{
    struct Dated {
        std::optional<QDateTime> start;
        const ZelMatch *match;
    };
    QMap<QString, QList<Dated>> days; // keys sort as text, which for "yyyy-MM-dd" is date order
    for (const ZelMatch &match : matches) {
        const auto start = LeagueCalendar::parseStartTime(match.startTime);
        const QString key = start ? LeagueCalendar::dayOf(*start).toString(Qt::ISODate) : QString();
        days[key].append({start, &match});
    }

    QList<MatchGroup> groups;
    for (auto day = days.begin(); day != days.end(); ++day) {
        // A day's matches all have a start, or (the undated group) none: those keep their order.
        std::stable_sort(day->begin(), day->end(), [ascending](const Dated &a, const Dated &b) {
            if (!a.start || !b.start)
                return false;
            return ascending ? *a.start < *b.start : *a.start > *b.start;
        });
        MatchGroup group{day.key(), {}};
        for (const Dated &dated : *day)
            group.matches.append(*dated.match);
        groups.append(std::move(group));
    }
    if (!ascending)
        std::reverse(groups.begin(), groups.end());
    return groups;
}

QString TodayPresenter::formatDate(const QString &key, const QLocale &locale)
{
    const QDate day = QDate::fromString(key, QStringLiteral("yyyy-MM-dd"));
    if (!day.isValid())
        return key;
    return locale.toString(day, QStringLiteral("dddd, d MMMM"));
}

QString TodayPresenter::todayLabel(const QDateTime &now, const QTimeZone &zone,
                                   const QLocale &locale)
{
    return locale.toString(now.toTimeZone(zone).date(), QStringLiteral("dddd, d MMMM yyyy"));
}

QString TodayPresenter::updatedLabel(const QDateTime &updated, bool offline, const QTimeZone &zone)
{
    const QString time =
        updated.isValid()
            ? tr("Updated %1").arg(updated.toTimeZone(zone).toString(QStringLiteral("HH:mm")))
            : QString();
    if (!offline)
        return time;
    return time.isEmpty() ? tr("Offline") : tr("Offline · %1").arg(time);
}
