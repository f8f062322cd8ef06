#pragma once

#include "PopoverTypes.h"
#include "ZelMatch.h"

#include <optional>
#include <QCoreApplication>
#include <QDateTime>
#include <QList>
#include <QLocale>
#include <QTimeZone>

// The popover's tabs, day groups and header texts.
class TodayPresenter {
    Q_DECLARE_TR_FUNCTIONS(TodayPresenter)

public:
    using AppTab = Popover::Tab;
    static const QList<AppTab> allTabs;
    static QString label(AppTab tab);

    static Popover::Content content(bool loading, const QString &error, bool listEmpty);
    static QString loadingText(AppTab tab);
    static QString emptyText(AppTab tab);
    static QString errorText(const QString &error);

    struct MatchGroup {
        QString date; // "yyyy-MM-dd" in the league's zone, or empty without a usable start
        QList<ZelMatch> matches;
    };
    // Day sections in date order, the undated section first when ascending and last otherwise;
    // within a day by start, equal starts keeping their order.
    static QList<MatchGroup> grouped(const QList<ZelMatch> &matches, bool ascending);
    // "Saturday, 21 March" for "2026-03-21"; any other key as it is.
    static QString formatDate(const QString &key, const QLocale &locale);
    // "Monday, 16 November 2026"
    static QString todayLabel(const QDateTime &now, const QTimeZone &zone, const QLocale &locale);
    // "Updated 19:42"; "Offline · Updated 19:42" while the data is out of date, "Offline" when
    // there never was any; empty before the first load.
    static QString updatedLabel(const QDateTime &updated, bool offline, const QTimeZone &zone);
};
