#include "LeagueCalendar.h"

#include <QTest>

class LeagueCalendarTest : public QObject {
    Q_OBJECT

private slots:
    void parseStartTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("utc"); // empty: no date

        // clang-format off
        QTest::newRow("fraction and offset") << "2026-04-12T19:30:00.000+05:30" << "2026-04-12T14:00:00.000Z";
        QTest::newRow("no fraction") << "2026-04-12T19:30:00+05:30" << "2026-04-12T14:00:00.000Z";
        QTest::newRow("Z") << "2026-04-05T20:00:00Z" << "2026-04-05T20:00:00.000Z";
        QTest::newRow("negative offset") << "2026-04-05T20:00:00.5-03:00" << "2026-04-05T23:00:00.500Z";
        QTest::newRow("missing offset") << "2026-04-05T20:00:00" << "";
        QTest::newRow("offset without colon") << "2026-04-05T20:00:00+0530" << "";
        QTest::newRow("impossible date") << "2026-02-30T20:00:00Z" << "";
        QTest::newRow("hour 24") << "2026-02-03T24:00:00Z" << "";
        QTest::newRow("lower-case t") << "2026-04-05t20:00:00Z" << "";
        QTest::newRow("empty fraction") << "2026-04-05T20:00:00.Z" << "";
        QTest::newRow("trailing space") << "2026-04-05T20:00:00Z " << "";
        QTest::newRow("date only") << "2026-04-05" << "";
        QTest::newRow("empty") << "" << "";
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
        QTest::newRow("evening in UTC, next day in India") << "2026-04-05T20:00:00Z"
                                                           << "2026-04-05T18:30:00Z";
        QTest::newRow("midnight in India exactly") << "2026-04-05T18:30:00Z"
                                                   << "2026-04-05T18:30:00Z";
        QTest::newRow("a second before it") << "2026-04-05T18:29:59Z"
                                            << "2026-04-04T18:30:00Z";
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
