#include "MatchRowPresenter.h"
#include "ScorecardPresenter.h"
#include "TodayPresenter.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

using BatsmanState = ScorecardPresenter::BatsmanState;
using Side = ScorecardPresenter::Side;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedKingdom);
const QTimeZone utc(0);

// Northport (home, id 1) against Southshore (away, id 2).
ZelMatch match(const QString &status, qint64 firstBattingID = 1)
{
    return ZelMatch{.matchID = 1,
                    .matchOrder = "Match 4",
                    .matchStatus = status,
                    .startTime = "2026-04-05T14:00:00Z",
                    .homeTeamID = "1",
                    .homeTeamName = "Northport",
                    .homeTeamAPICode = "NTH",
                    .awayTeamID = "2",
                    .awayTeamName = "Southshore",
                    .awayTeamAPICode = "STH",
                    .firstBattingTeamID = firstBattingID,
                    .firstBattingTeamCode = firstBattingID == 1 ? "NTH" : "STH",
                    .secondBattingTeamCode = firstBattingID == 1 ? "STH" : "NTH",
                    .groundName = "Harbour Oval",
                    .city = "Northport"};
}

ZelMatch with(ZelMatch m, const std::function<void(ZelMatch &)> &change)
{
    change(m);
    return m;
}

} // namespace

class PresentersTest : public QObject {
    Q_OBJECT

private slots:
    void rowTexts_data()
    {
        QTest::addColumn<ZelMatch>("match");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<QString>("centre");
        QTest::addColumn<QString>("sub"); // empty: no sub-line
        // Each state in a word, never an emoji, then the match as a sentence.
        QTest::addColumn<QString>("spoken");

        const auto scored = [](ZelMatch m, const QString &first, const QString &second) {
            m.firstBattingSummary = first;
            m.secondBattingSummary = second;
            return m;
        };
        const ZelMatch finished = match("finished", 2);
        QTest::newRow("finished: batting order, not home/away")
            << scored(finished, "185/6 (20 ov)", "180/8 (20 ov)") << u"\u2705"_s
            << u"185/6 \u2013 180/8"_s << u""_s << u"Result: Northport against Southshore"_s;
        QTest::newRow("finished, one score and a result")
            << with(scored(finished, "185/6 (20 ov)", ""),
                    [](ZelMatch &m) {
                        m.comments = " Won by 5 runs ";
                        m.awayTeamName.clear();
                    })
            << u"\u2705"_s << u"\u2713"_s << u""_s
            << u"Result: Northport against STH, Won by 5 runs"_s;
        QTest::newRow("finished, nothing known") << finished << u"\u2705"_s << u"Final"_s << u""_s
                                                 << u"Result: Northport against Southshore"_s;

        ZelMatch toss = with(match("live"), [](ZelMatch &m) {
            m.tossDetails = "Southshore won the toss and chose to bowl";
        });
        QTest::newRow("live before the first ball")
            << toss << u"\U0001F534"_s << u"Toss"_s << u"STH won, elected to field"_s
            << u"Live: Northport against Southshore, STH won the toss, chose to field"_s;
        QTest::newRow("live, toss names the home side, whose code is unknown")
            << with(toss,
                    [](ZelMatch &m) {
                        m.tossDetails = "Northport lost it: Southshore won the toss, will bat";
                        m.firstBattingTeamCode.clear();
                    })
            << u"\U0001F534"_s << u"Toss"_s << u"STH won, elected to bat"_s
            << u"Live: Northport against Southshore, Northport lost it: Southshore won the toss, "
               "will bat"_s;
        QTest::newRow("live, toss text without a decision")
            << with(toss, [](ZelMatch &m) { m.tossDetails = "Southshore won the toss"; })
            << u"\U0001F534"_s << u"Toss"_s << u""_s
            << u"Live: Northport against Southshore, Southshore won the toss"_s;
        QTest::newRow("live, first innings")
            << with(scored(match("live", 2), "96/2 (11.3 Ov)", ""),
                    [](ZelMatch &m) { m.currentInnings = "1"; })
            << u"\U0001F534"_s << u"96/2"_s << u"1st Innings"_s
            << u"Live: Southshore 96 for 2 in 11.3 overs against Northport"_s;
        QTest::newRow("live without toss") << match("live") << u"\U0001F534"_s << u"Live"_s << u""_s
                                           << u"Live: Northport against Southshore"_s;
        QTest::newRow("live, second innings")
            << with(scored(match("live"), "201/4 (20 Ov)", "150/3 (15.2 Ov)"),
                    [](ZelMatch &m) { m.currentInnings = "2"; })
            << u"\U0001F534"_s << u"201/4 \u2013 150/3"_s << u"2nd Innings"_s
            << u"Live: Southshore 150 for 3 in 15.2 overs, chasing 202 against Northport"_s;
        QTest::newRow("upcoming with a notice")
            << with(match("upcoming"), [](ZelMatch &m) { m.comments = " Rain delay "; })
            << u"\U0001F327\uFE0F"_s << u"Delayed"_s << u"Rain delay"_s
            << u"Delayed: Northport against Southshore, Rain delay"_s;
        QTest::newRow("upcoming")
            << match("upcoming") << u"\U0001F550"_s << u"2:00 PM"_s << u"Harbour Oval, Northport"_s
            << u"Upcoming: Northport against Southshore at 2:00 PM, Harbour Oval, Northport"_s;
        QTest::newRow("upcoming without start or city")
            << with(match("upcoming"),
                    [](ZelMatch &m) {
                        m.startTime = "tomorrow";
                        m.city.clear();
                    })
            << u"\U0001F550"_s << u"TBD"_s << u"Harbour Oval"_s
            << u"Upcoming: Northport against Southshore at TBD, Harbour Oval"_s;
        QTest::newRow("abandoned") << match("abandoned") << u"\u26C8\uFE0F"_s << u"Abandoned"_s
                                   << u""_s << u"Abandoned: Northport against Southshore"_s;
        QTest::newRow("unknown status")
            << with(match("unknown"), [](ZelMatch &m) { m.startTime.reset(); }) << u"\U0001F550"_s
            << u"TBD"_s << u""_s
            << u"Upcoming: Northport against Southshore at TBD, Harbour Oval, Northport"_s;
    }

    void rowTexts()
    {
        QFETCH(ZelMatch, match);
        QTEST(MatchRowPresenter::statusIcon(match), "icon");
        QTEST(MatchRowPresenter::centreText(match, utc, english), "centre");
        QTEST(MatchRowPresenter::centreSubText(match).value_or(QString()), "sub");
        QTEST(MatchRowPresenter::spokenText(match, utc, english), "spoken");
    }

    void resultAndFixtureLines_data()
    {
        QTest::addColumn<ZelMatch>("match");
        QTest::addColumn<QString>("scores");
        QTest::addColumn<QString>("venue");

        ZelMatch homeSecond = match("finished", 2);
        homeSecond.firstBattingSummary = "185/6 (20 ov)";
        homeSecond.secondBattingSummary = "180/8 (20 ov)";
        QTest::newRow("home batted second: home score first")
            << homeSecond << u"180/8 \u2013 185/6"_s << u"Harbour Oval, Northport"_s;
        homeSecond.secondBattingSummary.clear();
        homeSecond.city.clear();
        QTest::newRow("only the away score") << homeSecond << u"185/6"_s << u"Harbour Oval"_s;
        QTest::newRow("no scores") << match("finished") << u""_s << u"Harbour Oval, Northport"_s;
    }

    void resultAndFixtureLines()
    {
        QFETCH(ZelMatch, match);
        QTEST(MatchRowPresenter::scoresText(match), "scores");
        QTEST(MatchRowPresenter::venueText(match), "venue");
    }

    void headerTexts()
    {
        QCOMPARE(TodayPresenter::formatDate("2026-03-21", english), u"Saturday, 21 March"_s);
        const QDateTime late = QDateTime::fromString("2026-11-16T23:30:00Z", Qt::ISODate);
        QCOMPARE(TodayPresenter::todayLabel(late, utc, english), u"Monday, 16 November 2026"_s);
        QCOMPARE(TodayPresenter::todayLabel(late, QTimeZone(5 * 3600 + 1800), english),
                 u"Tuesday, 17 November 2026"_s);
        QCOMPARE(TodayPresenter::updatedLabel(late, false, QTimeZone(-5 * 3600)),
                 u"Updated 18:30"_s);
        QCOMPARE(TodayPresenter::updatedLabel(late, true, QTimeZone(-5 * 3600)),
                 u"Offline \u00B7 Updated 18:30"_s);
        QCOMPARE(TodayPresenter::updatedLabel({}, true, utc), u"Offline"_s);
        QCOMPARE(TodayPresenter::errorText("HTTP 503"), u"\u26A0\uFE0F  HTTP 503"_s);
        QStringList labels;
        for (auto tab : TodayPresenter::allTabs)
            labels.append(TodayPresenter::label(tab));
        QCOMPARE(labels, (QStringList{"Results", "Today", "Fixtures"}));
    }

    void inningsTabs_data()
    {
        QTest::addColumn<ZelMatch>("match");
        QTest::addColumn<int>("innings"); // innings the scorecard holds
        QTest::addColumn<int>("initial");
        QTest::addColumn<QString>("tab1");
        // Per tab index 0, 1 and 2 (a live match past its second innings): H, A, or - for an
        // innings.
        QTest::addColumn<QString>("yetToBat");

        ZelMatch live = match("live");
        live.firstBattingSummary = "201/4 (20 Ov)";
        live.secondBattingSummary = "12/0 (2 Ov)";
        live.currentInnings = "2";
        QTest::newRow("live, second innings") << live << 2 << 1 << u"1st \u00B7 NTH"_s << u"--A"_s;
        ZelMatch toss = match("live", 2);
        toss.currentInnings = "1";
        toss.firstBattingTeamCode.clear();
        QTest::newRow("before the first ball, even with innings")
            << toss << 1 << 0 << u"1st"_s << u"AHA"_s;
        toss = match("live");
        toss.currentInnings = "1";
        toss.firstBattingTeamCode.clear();
        QTest::newRow("before the first ball, the home side batting first")
            << toss << 1 << 0 << u"1st"_s << u"HAA"_s;
        QTest::newRow("finished with one innings")
            << match("finished") << 1 << 0 << u"1st \u00B7 NTH"_s << u"-AA"_s;
    }

    void inningsTabs()
    {
        QFETCH(ZelMatch, match);
        QFETCH(int, innings);
        ZelScorecard scorecard;
        for (int i = 0; i < innings; ++i)
            scorecard.innings.append(ZelInnings{i + 1, "Side", {}, {}});
        QTEST(ScorecardPresenter::initialInnings(match), "initial");
        QTEST(ScorecardPresenter::tab1Label(match), "tab1");
        QString shown;
        for (int tab = 0; tab < 3; ++tab) {
            const auto side = ScorecardPresenter::yetToBat(match, scorecard, tab);
            shown += !side ? u'-' : *side == Side::Home ? u'H' : u'A';
        }
        QTEST(shown, "yetToBat");
    }

    void batsmanState_data()
    {
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("notOut");
        QTest::addColumn<QString>("balls");
        QTest::addColumn<int>("state");

        QTest::newRow("striker with captain mark")
            << u"live"_s << u"Arjun Mehta (c)"_s << u"1"_s << u"10"_s << int(BatsmanState::Striker);
        QTest::newRow("non-striker, his mark first") << u"live"_s << u"(wk) Kabir Rao\t"_s << u"1"_s
                                                     << u"3"_s << int(BatsmanState::NonStriker);
        QTest::newRow("out in the live innings")
            << u"live"_s << u"Dev Iyer"_s << u"0"_s << u"9"_s << int(BatsmanState::Out);
        QTest::newRow("waiting in the live innings")
            << u"live"_s << u"Ravi Nair (wk)"_s << u"1"_s << u"0"_s << int(BatsmanState::Waiting);
        QTest::newRow("did not bat")
            << u"finished"_s << u"Ravi Nair"_s << u"1"_s << u"0"_s << int(BatsmanState::DidNotBat);
        QTest::newRow("not out") << u"finished"_s << u"Arjun Mehta (c)"_s << u"1"_s << u"12"_s
                                 << int(BatsmanState::NotOut);
        QTest::newRow("out when finished")
            << u"finished"_s << u"Dev Iyer"_s << u"0"_s << u"9"_s << int(BatsmanState::Out);
    }

    void batsmanState()
    {
        QFETCH(QString, status);
        ZelMatch m = match(status);
        m.currentInnings = "1";
        m.currentStrikerName = "Arjun Mehta";
        m.currentNonStrikerName = "Kabir Rao";
        QFETCH(QString, name);
        QFETCH(QString, notOut);
        QFETCH(QString, balls);
        ZelBattingEntry entry;
        entry.name = name;
        entry.isNotOut = notOut;
        entry.balls = balls;
        QTEST(int(ScorecardPresenter::batsmanState(m, entry, 1)), "state");
        // Another innings number is never the one in progress.
        if (status == "live" && notOut == "1")
            QVERIFY(ScorecardPresenter::batsmanState(m, entry, 2) != BatsmanState::Striker);
    }

    // A scorecard line as a screen reader says it.
    void spokenLines_data()
    {
        QTest::addColumn<QStringList>("figures"); // name, then the figures in column order
        QTest::addColumn<int>("state");           // a batter's; -1 bowling, -2 bowling now
        QTest::addColumn<QString>("spoken");
        QTest::newRow("captain not out")
            << QStringList{u"Sameer Khan (c)"_s, u"32"_s, u"27"_s, u"3"_s, u"1"_s, u"119"_s}
            << int(BatsmanState::NotOut)
            << u"Sameer Khan, captain, not out: 32 runs from 27 balls, 3 fours, 1 six, strike "
               u"rate 119"_s;
        QTest::newRow("keeper on strike, no boundary, no rate")
            << QStringList{u"(wk) Kabir Rao"_s, u"1"_s, u"1"_s, u"0"_s, u"0"_s, u"-"_s}
            << int(BatsmanState::Striker)
            << u"Kabir Rao, wicket-keeper, on strike: 1 run from 1 ball, no fours, no sixes"_s;
        QTest::newRow("out for a duck")
            << QStringList{u"Dev Iyer"_s, u"0"_s, u"2"_s, u"0"_s, u"0"_s, u"0.00"_s}
            << int(BatsmanState::Out)
            << u"Dev Iyer, out: 0 runs from 2 balls, no fours, no sixes, strike rate 0.00"_s;
        QTest::newRow("yet to bat")
            << QStringList{u"Liam Iyer"_s, u"0"_s, u"0"_s, u"0"_s, u"0"_s, u"-"_s}
            << int(BatsmanState::Waiting) << u"Liam Iyer, yet to bat"_s;
        QTest::newRow("bowler, a mark of another kind")
            << QStringList{u"Yash Bhatt (vc)"_s, u"2"_s, u"0"_s, u"18"_s, u"0"_s, u"9.00"_s} << -1
            << u"Yash Bhatt, vc: 2 overs, no maiden, 18 runs, no wicket, economy 9.00"_s;
        QTest::newRow("bowling now, no economy yet")
            << QStringList{u"Om Rao"_s, u"0.1"_s, u"1"_s, u"1"_s, u"1"_s, u"-"_s} << -2
            << u"Om Rao, bowling: 0.1 overs, 1 maiden, 1 run, 1 wicket"_s;
    }

    void spokenLines()
    {
        QFETCH(QStringList, figures);
        QFETCH(int, state);
        if (state < 0) {
            const ZelBowlingEntry bowler{figures[0], figures[1], figures[2],
                                         figures[3], figures[4], figures[5]};
            QTEST(ScorecardPresenter::spokenBowling(bowler, state == -2), "spoken");
            return;
        }
        ZelBattingEntry batter;
        batter.name = figures[0];
        batter.runs = figures[1];
        batter.balls = figures[2];
        batter.fours = figures[3];
        batter.sixes = figures[4];
        batter.strikeRate = figures[5];
        QTEST(ScorecardPresenter::spokenBatting(batter, BatsmanState(state)), "spoken");
    }
};

QTEST_GUILESS_MAIN(PresentersTest)
#include "tst_presenters.moc"
