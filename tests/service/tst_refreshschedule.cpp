#include "RefreshSchedule.h"
#include "SampleMatches.h"

#include <QTest>

using namespace SampleMatches;

class RefreshScheduleTest : public QObject {
    Q_OBJECT

private slots:
    void interval_data()
    {
        QTest::addColumn<QList<ZelMatch>>("today");
        QTest::addColumn<qint64>("seconds");

        // clang-format off
        QTest::newRow("nothing") << QList<ZelMatch>{} << 600LL;
        QTest::newRow("live") << QList<ZelMatch>{match("upcoming", in(300)), live("1", "", "")} << 30LL;
        QTest::newRow("starts in 20 min") << QList<ZelMatch>{match("upcoming", in(20))} << 30LL;
        QTest::newRow("start passed") << QList<ZelMatch>{match("upcoming", in(-10))} << 30LL;
        // The close watch starts strictly inside the half hour; at the mark the next wake-up
        // is the idle one.
        QTest::newRow("exactly half an hour") << QList<ZelMatch>{match("upcoming", in(30))} << 600LL;
        QTest::newRow("half an hour and a minute") << QList<ZelMatch>{match("upcoming", in(31))} << 60LL;
        QTest::newRow("starts in 35 min") << QList<ZelMatch>{match("upcoming", in(35))} << 300LL;
        QTest::newRow("starts in 45 min") << QList<ZelMatch>{match("upcoming", in(45))} << 600LL;
        QTest::newRow("notice") << QList<ZelMatch>{match("upcoming", in(300), "Rain")} << 60LL;
        QTest::newRow("notice on a finished match") << QList<ZelMatch>{match("finished", in(300), "Rain")} << 600LL;
        QTest::newRow("blank notice") << QList<ZelMatch>{match("upcoming", in(300), " \t")} << 600LL;
        QTest::newRow("nearest start wins") << QList<ZelMatch>{match("upcoming", in(38)), match("upcoming", in(33))} << 180LL;
        QTest::newRow("no start") << QList<ZelMatch>{match("upcoming", std::nullopt)} << 600LL;
        QTest::newRow("a finished match's start is no lead") << QList<ZelMatch>{match("finished", in(35))} << 600LL;
        QTest::newRow("matches past the finished one still count") << QList<ZelMatch>{match("finished", in(35)), match("upcoming", in(38))} << 480LL;
        QTest::newRow("tomorrow's match still counts") << QList<ZelMatch>{match("upcoming", in(660))} << 600LL;
        // clang-format on
    }

    void interval()
    {
        QFETCH(QList<ZelMatch>, today);
        QFETCH(qint64, seconds);
        QCOMPARE(RefreshSchedule::interval({today, LeagueCalendar::startTimesOf(today)}, now),
                 std::chrono::milliseconds(seconds * 1000));
    }

    void retryDoublesUpToTheIdleInterval_data()
    {
        QTest::addColumn<int>("failures");
        QTest::addColumn<int>("seconds");
        QTest::newRow("first") << 1 << 30;
        QTest::newRow("second") << 2 << 60;
        QTest::newRow("fifth") << 5 << 480;
        QTest::newRow("sixth reaches the idle interval") << 6 << 600;
        QTest::newRow("hundredth") << 100 << 600;
    }

    void retryDoublesUpToTheIdleInterval()
    {
        QFETCH(int, failures);
        QFETCH(int, seconds);
        QCOMPARE(RefreshSchedule::retryAfter(failures), std::chrono::seconds(seconds));
    }
};

QTEST_GUILESS_MAIN(RefreshScheduleTest)
#include "tst_refreshschedule.moc"
