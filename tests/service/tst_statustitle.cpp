#include "SampleMatches.h"
#include "StatusTitle.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

using namespace SampleMatches;

namespace {
const QString bat = u"\U0001F3CF"_s;

// The same match with the favourite team on the away side.
ZelMatch followed(ZelMatch m)
{
    m.awayTeamID = u"fav"_s;
    return m;
}
} // namespace

Q_DECLARE_METATYPE(StatusTitle::State)

class StatusTitleTest : public QObject {
    Q_OBJECT

private slots:
    void compose_data()
    {
        QTest::addColumn<QList<ZelMatch>>("today");
        QTest::addColumn<QList<ZelMatch>>("fixtures");
        QTest::addColumn<QString>("title");

        const ZelMatch firstInnings = live("1", "50/1 (6.2 Ov)", "");
        const ZelMatch finished = match("finished", in(-240), " NTH won by 4 runs\t");
        const ZelMatch fixture = match("upcoming", "2026-11-24T19:30:00+05:30");

        QTest::newRow("nothing at all: idle") << QList<ZelMatch>{} << QList<ZelMatch>{} << bat;
        QTest::newRow("live beats everything, first in list order")
            << QList<ZelMatch>{match("upcoming", in(30), "Rain"), firstInnings,
                               live("2", "201/4 (20 Ov)", "1/0 (0.1 Ov)")}
            << QList<ZelMatch>{fixture} << bat + "  NTH \U0001F534 50/1 (6.2)";
        QTest::newRow("live since yesterday still counts") << QList<ZelMatch>{[&] {
            ZelMatch m = firstInnings;
            m.startTime = "2026-11-21T22:00:00+05:30";
            return m;
        }()} << QList<ZelMatch>{} << bat + "  NTH \U0001F534 50/1 (6.2)";
        QTest::newRow("delayed with codes")
            << QList<ZelMatch>{match("upcoming", in(-10), "Rain delay"), match("upcoming", in(5))}
            << QList<ZelMatch>{} << bat + "  STH vs NTH \u2022 Delayed";
        QTest::newRow("delayed without codes") << QList<ZelMatch>{[] {
            ZelMatch m = match("upcoming", in(-10), "Wet outfield");
            m.awayTeamAPICode.clear();
            return m;
        }()} << QList<ZelMatch>{} << bat + "  Delayed";
        QTest::newRow("of several delays, the earliest start")
            << QList<ZelMatch>{match("upcoming", in(-5), "Rain", "LAT", "ERL"),
                               match("upcoming", in(-20), "Rain", "EAR", "LY")}
            << QList<ZelMatch>{} << bat + "  EAR vs LY \u2022 Delayed";
        QTest::newRow("of two delays at one start, the first listed")
            << QList<ZelMatch>{match("upcoming", in(-5), "Rain", "FIR", "ST"),
                               match("upcoming", in(-5), "Rain", "SEC", "ND")}
            << QList<ZelMatch>{} << bat + "  FIR vs ST \u2022 Delayed";
        QTest::newRow("a delay from yesterday is not today's")
            << QList<ZelMatch>{match("upcoming", "2026-11-21T23:59:00+05:30", "Rain"),
                               match("upcoming", in(90))}
            << QList<ZelMatch>{} << bat + "  1h 30m";
        QTest::newRow("blank comment is no delay")
            << QList<ZelMatch>{match("upcoming", in(125), " \t ")} << QList<ZelMatch>{}
            << bat + "  2h 5m";
        QTest::newRow("earliest upcoming today")
            << QList<ZelMatch>{match("upcoming", in(120)), match("upcoming", in(60))}
            << QList<ZelMatch>{fixture} << bat + "  1h";
        QTest::newRow("upcoming start already passed")
            << QList<ZelMatch>{match("upcoming", in(-1))} << QList<ZelMatch>{}
            << bat + "  Starting Soon";
        QTest::newRow("today's latest result, trimmed")
            << QList<ZelMatch>{match("finished", in(-400), "Earlier result"), finished}
            << QList<ZelMatch>{fixture} << bat + "  NTH won by 4 runs";
        QTest::newRow("latest result without comment falls to fixtures")
            << QList<ZelMatch>{match("finished", in(-400), "Earlier result"),
                               match("finished", in(-200))}
            << QList<ZelMatch>{fixture} << bat + "  2d 5h";
        QTest::newRow("a result from the day's first second counts")
            << QList<ZelMatch>{match("finished", "2026-11-22T00:00:00+05:30", "Early win")}
            << QList<ZelMatch>{} << bat + "  Early win";
        QTest::newRow("yesterday's result is not today's")
            << QList<ZelMatch>{match("finished", "2026-11-21T23:59:59+05:30", "Late win")}
            << QList<ZelMatch>{} << bat;
        QTest::newRow("tomorrow's upcoming match is not today's")
            << QList<ZelMatch>{match("upcoming", "2026-11-23T00:00:00+05:30")} << QList<ZelMatch>{}
            << bat;
        QTest::newRow("a match without a start is not today's")
            << QList<ZelMatch>{match("upcoming", std::nullopt)} << QList<ZelMatch>{fixture}
            << bat + "  2d 5h";
        QTest::newRow("earliest fixture; one without a start sorts last")
            << QList<ZelMatch>{}
            << QList<ZelMatch>{match("upcoming", std::nullopt),
                               match("upcoming", "2026-11-23T15:30:00+05:30"), fixture}
            << bat + "  1d 1h";
        QTest::newRow("fixtures without starts: idle")
            << QList<ZelMatch>{} << QList<ZelMatch>{match("upcoming", std::nullopt)} << bat;
        const QString sentence =
            u"Northport Strikers won by 7 wickets (DLS method, 12 balls to "
            "spare), their third win in a row at the Harbour Oval this season"_s;
        QTest::newRow("a result sentence of 120 characters, whole")
            << QList<ZelMatch>{match("finished", in(-240), sentence)} << QList<ZelMatch>{}
            << bat + "  " + sentence;
        QTest::newRow("a hostile comment on one line, cut between words")
            << QList<ZelMatch>{match("finished", in(-240),
                                     "NTH won\nby " + u"ten  "_s.repeated(40))}
            << QList<ZelMatch>{}
            << bat + "  NTH won by " + u"ten  "_s.repeated(28) + u"ten\u2026"_s;
        QTest::newRow("one word to the bound, whole")
            << QList<ZelMatch>{match("finished", in(-240), QString(156, u'4'))} << QList<ZelMatch>{}
            << bat + "  " + QString(156, u'4');
        QTest::newRow("one word past the bound, cut within it")
            << QList<ZelMatch>{match("finished", in(-240), QString(200, u'4'))} << QList<ZelMatch>{}
            << bat + "  " + QString(StatusTitle::maximumLength - 5, u'4') + u'\u2026';
        QTest::newRow("unknown status matches no rule")
            << QList<ZelMatch>{match("Live", in(-30)), match("unknown", in(30))}
            << QList<ZelMatch>{} << bat;
    }

    void compose()
    {
        QFETCH(QList<ZelMatch>, today);
        QFETCH(QList<ZelMatch>, fixtures);
        const auto todayStarts = LeagueCalendar::startTimesOf(today);
        const auto fixtureStarts = LeagueCalendar::startTimesOf(fixtures);
        QTEST(StatusTitle::compose({today, todayStarts}, {fixtures, fixtureStarts}, now).text,
              "title");
    }

    // Where a rule could name several matches it names the favourite's; everything else is as
    // without one.
    void favourite_data()
    {
        QTest::addColumn<QList<ZelMatch>>("today");
        QTest::addColumn<QList<ZelMatch>>("fixtures");
        QTest::addColumn<QString>("without");
        QTest::addColumn<QString>("with");

        ZelMatch secondLive = live("1", "12/3 (2 Ov)", "");
        secondLive.firstBattingTeamCode = u"FAV"_s;
        QTest::newRow("two live") << QList<ZelMatch>{live("1", "50/1 (6.2 Ov)", ""),
                                                     followed(secondLive)}
                                  << QList<ZelMatch>{} << bat + "  NTH \U0001F534 50/1 (6.2)"
                                  << bat + "  FAV \U0001F534 12/3 (2)";
        QTest::newRow("two delays")
            << QList<ZelMatch>{match("upcoming", in(-20), "Rain"),
                               followed(match("upcoming", in(-5), "Rain", "FAV", "OPP"))}
            << QList<ZelMatch>{} << bat + "  STH vs NTH \u2022 Delayed"
            << bat + "  FAV vs OPP \u2022 Delayed";
        QTest::newRow("two starts today")
            << QList<ZelMatch>{match("upcoming", in(60)), followed(match("upcoming", in(180)))}
            << QList<ZelMatch>{} << bat + "  1h" << bat + "  3h";
        QTest::newRow("two results")
            << QList<ZelMatch>{followed(match("finished", in(-400), "FAV won")),
                               match("finished", in(-200), "NTH won")}
            << QList<ZelMatch>{} << bat + "  NTH won" << bat + "  FAV won";
        QTest::newRow("two fixtures")
            << QList<ZelMatch>{}
            << QList<ZelMatch>{match("upcoming", "2026-11-23T15:30:00+05:30"),
                               followed(match("upcoming", "2026-11-24T19:30:00+05:30"))}
            << bat + "  1d 1h" << bat + "  2d 5h";
        QTest::newRow("one live beats the favourite's start")
            << QList<ZelMatch>{followed(match("upcoming", in(30))), live("1", "50/1 (6.2 Ov)", "")}
            << QList<ZelMatch>{} << bat + "  NTH \U0001F534 50/1 (6.2)"
            << bat + "  NTH \U0001F534 50/1 (6.2)";
        QTest::newRow("the favourite's fixture without a start")
            << QList<ZelMatch>{}
            << QList<ZelMatch>{followed(match("upcoming", std::nullopt)),
                               match("upcoming", "2026-11-24T19:30:00+05:30")}
            << bat + "  2d 5h" << bat + "  2d 5h";
        QTest::newRow("the favourite's match from yesterday")
            << QList<ZelMatch>{followed(match("finished", "2026-11-21T19:30:00+05:30", "FAV won")),
                               match("finished", in(-200), "NTH won")}
            << QList<ZelMatch>{} << bat + "  NTH won" << bat + "  NTH won";
    }

    void favourite()
    {
        QFETCH(QList<ZelMatch>, today);
        QFETCH(QList<ZelMatch>, fixtures);
        const auto todayStarts = LeagueCalendar::startTimesOf(today);
        const auto fixtureStarts = LeagueCalendar::startTimesOf(fixtures);
        QTEST(StatusTitle::compose({today, todayStarts}, {fixtures, fixtureStarts}, now).text,
              "without");
        QTEST(StatusTitle::compose({today, todayStarts}, {fixtures, fixtureStarts}, now, u"fav"_s)
                  .text,
              "with");
    }

    // What the icons mark: the rule that chose the title, not words that happen to be in it.
    void titleState_data()
    {
        QTest::addColumn<ZelMatch>("match");
        QTest::addColumn<StatusTitle::State>("state");
        QTest::newRow("live with a score")
            << live("1", "45/2 (6.3 Ov)", "") << StatusTitle::State::Live;
        QTest::newRow("live before the first ball")
            << live("1", "", "") << StatusTitle::State::Live;
        QTest::newRow("delayed start")
            << match("upcoming", in(-10), "Rain") << StatusTitle::State::Delayed;
        QTest::newRow("a result that says Delayed")
            << match("finished", in(-240), "Match Delayed") << StatusTitle::State::Quiet;
        QTest::newRow("a result with a red circle")
            << match("finished", in(-240), "NTH \U0001F534 won") << StatusTitle::State::Quiet;
        QTest::newRow("countdown") << match("upcoming", in(30)) << StatusTitle::State::Quiet;
    }

    void titleState()
    {
        QFETCH(ZelMatch, match);
        const QList<ZelMatch> today{match};
        const auto starts = LeagueCalendar::startTimesOf(today);
        QTEST(StatusTitle::compose({today, starts}, {{}, {}}, now).state, "state");
    }

    void liveText_data()
    {
        QTest::addColumn<ZelMatch>("match");
        QTest::addColumn<QString>("title");

        QTest::newRow("second innings") << live("2", "201/4 (20 Ov)", "150/3 (15.2 Ov)")
                                        << bat + "  NTH 201/4 \u00B7 STH 150/3 (15.2)";
        QTest::newRow("second innings, no second score yet")
            << live("2", "201/4 (20 Ov)", "") << bat + "  NTH \U0001F534 201/4 (20)";
        QTest::newRow("first summary without parentheses")
            << live("2", "201/4", "12/0 (2 Ov)") << bat + "  NTH 201/4 \u00B7 STH 12/0 (2)";
        QTest::newRow("only the second summary, under the first code")
            << live("1", "", "88/2 (9 Ov)") << bat + "  NTH \U0001F534 88/2 (9)";

        ZelMatch toss = live("", "", "");
        toss.homeTeamName = "Northport";
        toss.homeTeamID = "5";
        toss.firstBattingTeamID = 5;
        toss.tossDetails = "Northport won the toss and elected to bowl";
        toss.awayTeamName = "Southshore";
        toss.awayTeamID = "6";
        QTest::newRow("toss named, home batted first") << toss << bat + "  NTH chose to field";
        toss.tossDetails = "Southshore won the toss and elected to bowl";
        QTest::newRow("away won the toss, bats second") << toss << bat + "  STH chose to field";
        toss.tossDetails = "The visitors won the toss and elected to bat";
        QTest::newRow("toss names neither side: the first batting side")
            << toss << bat + "  NTH chose to bat";
        toss.tossDetails = "Northport won the toss";
        QTest::newRow("toss without a decision") << toss << bat + "  Zel \u2022 Toss";
        toss.tossDetails.clear();
        QTest::newRow("no toss text, batting side known") << toss << bat + "  NTH chose to bat";
        toss.firstBattingTeamCode.clear();
        QTest::newRow("nothing known") << toss << bat + "  Zel \u2022 Toss";
    }

    void liveText()
    {
        QFETCH(ZelMatch, match);
        QTEST(StatusTitle::liveStatusBarText(match), "title");
    }

    void shortScore_data()
    {
        QTest::addColumn<QString>("summary");
        QTest::addColumn<QString>("shortened");
        QTest::newRow("Ov") << u"150/3 (15.2 Ov)"_s << u"150/3 (15.2)"_s;
        QTest::newRow("any case") << u"150/3 (20 OV)"_s << u"150/3 (20)"_s;
        QTest::newRow("ovs") << u"99/9 (19.5 ovs)"_s << u"99/9 (19.5)"_s;
        QTest::newRow("no closing bracket") << u"99/9 19.5 Ov"_s << u"99/9 19.5 Ov"_s;
    }

    void shortScore()
    {
        QFETCH(QString, summary);
        QTEST(StatusTitle::shortScoreWithOvers(summary), "shortened");
    }

    void countdown_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("30 s") << 30LL << u"1m"_s;
        QTest::newRow("59 m 59 s") << 3599LL << u"59m"_s;
        QTest::newRow("2 h") << 7200LL << u"2h"_s;
        QTest::newRow("2 h 5 m") << 7500LL << u"2h 5m"_s;
        QTest::newRow("23 h 59 m") << 86399LL << u"23h 59m"_s;
        QTest::newRow("1 d 3 h 40 m") << 99600LL << u"1d 3h"_s;
        QTest::newRow("2 d 20 m") << 174000LL << u"2d"_s;
        QTest::newRow("now") << 0LL << u"Starting Soon"_s;
        QTest::newRow("5 s ago") << -5LL << u"Starting Soon"_s;
    }

    void countdown()
    {
        QFETCH(qint64, seconds);
        QTEST(StatusTitle::countdown(now.addSecs(seconds), now), "text");
    }
};

QTEST_GUILESS_MAIN(StatusTitleTest)
#include "tst_statustitle.moc"
