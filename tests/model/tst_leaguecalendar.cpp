#include "LeagueCalendar.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class LeagueCalendarTest : public QObject {
    Q_OBJECT

private slots:
    void parseStartTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("utc"); // empty: no date

        // clang-format off
        QTest::newRow("fraction and offset") << u"2026-04-12T19:30:00.000+05:30"_s << u"2026-04-12T14:00:00.000Z"_s;
        QTest::newRow("no fraction") << u"2026-04-12T19:30:00+05:30"_s << u"2026-04-12T14:00:00.000Z"_s;
        QTest::newRow("Z") << u"2026-04-05T20:00:00Z"_s << u"2026-04-05T20:00:00.000Z"_s;
        QTest::newRow("negative offset") << u"2026-04-05T20:00:00.5-03:00"_s << u"2026-04-05T23:00:00.500Z"_s;
        QTest::newRow("missing offset") << u"2026-04-05T20:00:00"_s << u""_s;
        QTest::newRow("offset without colon") << u"2026-04-05T20:00:00+0530"_s << u""_s;
        QTest::newRow("impossible date") << u"2026-02-30T20:00:00Z"_s << u""_s;
        QTest::newRow("hour 24") << u"2026-02-03T24:00:00Z"_s << u""_s;
        QTest::newRow("lower-case t") << u"2026-04-05t20:00:00Z"_s << u""_s;
        QTest::newRow("empty fraction") << u"2026-04-05T20:00:00.Z"_s << u""_s;
        QTest::newRow("trailing space") << u"2026-04-05T20:00:00Z "_s << u""_s;
        QTest::newRow("date only") << u"2026-04-05"_s << u""_s;
        QTest::newRow("empty") << u""_s << u""_s;
        // clang-format on
    }

    void parseStartTime()
    {
        QFETCH(QString, text);
        const auto parsed = LeagueCalendar::parseStartTime(QStringView(text));
        QTEST(parsed ? parsed->toUTC().toString(Qt::ISODateWithMs) : QString(), "utc");
    }

    // The tests run in São Paulo's zone (UTC-3), so a day taken from the machine fails here.
    void leagueDayIgnoresTheMachineZone_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::addColumn<QString>("dayStartUTC");
        QTest::newRow("evening in UTC, next day in India")
            << u"2026-04-05T20:00:00Z"_s << u"2026-04-05T18:30:00Z"_s;
        QTest::newRow("midnight in India exactly")
            << u"2026-04-05T18:30:00Z"_s << u"2026-04-05T18:30:00Z"_s;
        QTest::newRow("a second before it")
            << u"2026-04-05T18:29:59Z"_s << u"2026-04-04T18:30:00Z"_s;
    }

    void leagueDayIgnoresTheMachineZone()
    {
        QFETCH(QString, moment);
        QFETCH(QString, dayStartUTC);
        const QDateTime at = QDateTime::fromString(moment, Qt::ISODate);
        const QDateTime start = QDateTime::fromString(dayStartUTC, Qt::ISODate);
        QCOMPARE(LeagueCalendar::startOfDay(at), start);
        QCOMPARE(LeagueCalendar::startOfNextDay(at), start.addDays(1));
        QCOMPARE(LeagueCalendar::dayOf(at), start.addSecs(19800).toUTC().date());
    }
};

QTEST_GUILESS_MAIN(LeagueCalendarTest)
#include "tst_leaguecalendar.moc"
