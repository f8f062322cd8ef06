#include "MatchEvents.h"
#include "Preferences.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(MatchEvents::Wanted)

namespace {

// Match 1 is Northport (home, 11, batting first) against Southshore (12); match 2 is Eastgate
// (21) against Westport (22).
ZelMatch state(qint64 id, const QString &status, const QString &first = {},
               const QString &second = {}, const QString &innings = {})
{
    ZelMatch m{.matchID = id, .matchStatus = status};
    m.homeTeamID = QString::number(id * 10 + 1);
    m.awayTeamID = QString::number(id * 10 + 2);
    m.firstBattingTeamID = id * 10 + 1;
    m.homeTeamName = id == 1 ? u"Northport"_s : u"Eastgate"_s;
    m.awayTeamName = id == 1 ? u"Southshore"_s : u"Westport"_s;
    m.homeTeamAPICode = id == 1 ? u"NTH"_s : u"EAS"_s;
    m.awayTeamAPICode = id == 1 ? u"STH"_s : u"WES"_s;
    m.firstBattingTeamCode = m.homeTeamAPICode;
    m.secondBattingTeamCode = m.awayTeamAPICode;
    m.firstBattingSummary = first;
    m.secondBattingSummary = second;
    m.currentInnings = innings;
    m.comments = status == "finished" ? u"Northport won by 5 runs"_s : QString();
    return m;
}

using Load = QList<ZelMatch>;
const MatchEvents::Wanted everything{true, true, true, {}};

} // namespace

class MatchEventsTest : public QObject {
    Q_OBJECT

private slots:
    // Loads in order; what each tells, as "load: kind match".
    void events_data()
    {
        QTest::addColumn<QList<Load>>("loads");
        QTest::addColumn<MatchEvents::Wanted>("wanted");
        QTest::addColumn<QStringList>("told");

        const ZelMatch upcoming = state(1, u"upcoming"_s);
        const ZelMatch started = state(1, u"live"_s, u"0/0 (0.1 Ov)"_s, {}, u"1"_s);
        const ZelMatch wicket = state(1, u"live"_s, u"20/1 (3 Ov)"_s, {}, u"1"_s);
        const ZelMatch twoDown = state(1, u"live"_s, u"30/2 (4 Ov)"_s, {}, u"1"_s);
        const ZelMatch chase = state(1, u"live"_s, u"150/6 (20 Ov)"_s, u"12/1 (2 Ov)"_s, u"2"_s);
        const ZelMatch over = state(1, u"finished"_s, u"150/6 (20 Ov)"_s, u"140/9 (20 Ov)"_s);

        QTest::newRow("a whole match")
            << QList<Load>{{upcoming}, {started}, {wicket}, {wicket}, {twoDown}, {chase}, {over}}
            << everything
            << QStringList{u"1: started 1"_s, u"2: wicket 1"_s, u"4: wicket 1"_s, u"5: wicket 1"_s,
                           u"6: finished 1"_s};
        QTest::newRow("what was so at start-up is not news")
            << QList<Load>{{twoDown}, {twoDown}, {over}} << everything
            << QStringList{u"2: finished 1"_s};
        QTest::newRow("data going back and forth")
            << QList<Load>{{upcoming}, {started}, {upcoming}, {started}, {twoDown},
                           {wicket},   {twoDown}, {over},     {chase},   {over}}
            << everything << QStringList{u"1: started 1"_s, u"4: wicket 1"_s, u"7: finished 1"_s};
        QTest::newRow("a finished match reported live again")
            << QList<Load>{{over}, {chase}, {over}} << everything << QStringList{};
        QTest::newRow("one per match per load, the weightiest")
            << QList<Load>{{upcoming}, {twoDown}, {over}} << everything
            << QStringList{u"1: wicket 1"_s, u"2: finished 1"_s};
        QTest::newRow("a wicket falling as the match starts")
            << QList<Load>{{upcoming}, {wicket}} << MatchEvents::Wanted{true, true, false, {}}
            << QStringList{u"1: wicket 1"_s};
        QTest::newRow("a match that appears mid-day")
            << QList<Load>{{}, {wicket}, {twoDown}} << everything << QStringList{u"2: wicket 1"_s};
        QTest::newRow("only results wanted")
            << QList<Load>{{upcoming}, {started}, {wicket}, {over}}
            << MatchEvents::Wanted{false, false, true, {}} << QStringList{u"3: finished 1"_s};
        QTest::newRow("the favourite's matches only")
            << QList<Load>{{upcoming, state(2, u"upcoming"_s)},
                           {started, state(2, u"live"_s, u"0/0 (0.1 Ov)"_s, {}, u"1"_s)}}
            << MatchEvents::Wanted{true, true, true, u"22"_s} << QStringList{u"1: started 2"_s};
    }

    void events()
    {
        QFETCH(QList<Load>, loads);
        QFETCH(MatchEvents::Wanted, wanted);
        MatchEvents events;
        QStringList told;
        for (qsizetype load = 0; load < loads.size(); ++load) {
            for (const auto &event : events.compare(loads[load], wanted)) {
                static const char *const kinds[] = {"started", "wicket", "finished"};
                told << u"%1: %2 %3"_s.arg(load)
                            .arg(QLatin1StringView(kinds[int(event.kind)]))
                            .arg(event.match.matchID);
            }
        }
        QTEST(told, "told");
    }

    // After a wake the next load is taken as it is, like the first.
    void wakeIsNotNews()
    {
        MatchEvents events;
        events.compare({state(1, u"upcoming"_s)}, everything);
        events.rebase();
        QVERIFY(events.compare({state(1, u"live"_s, u"20/1 (3 Ov)"_s, {}, u"1"_s)}, everything)
                    .isEmpty());
        QCOMPARE(events.compare({state(1, u"live"_s, u"25/2 (3.4 Ov)"_s, {}, u"1"_s)}, everything)
                     .size(),
                 1);
    }

    void texts()
    {
        MatchEvents events;
        events.compare({state(1, u"upcoming"_s)}, everything);
        ZelMatch started = state(1, u"live"_s);
        started.tossDetails = u"Southshore won the toss and elected to bowl"_s;
        auto told = events.compare({started}, everything);
        QCOMPARE(told.first().title, u"NTH vs STH has started"_s);
        QCOMPARE(told.first().body, u"STH won the toss, chose to field"_s);
        told = events.compare({state(1, u"live"_s, u"150/6 (20 Ov)"_s, u"12/1 (2 Ov)"_s, u"2"_s)},
                              everything);
        QCOMPARE(told.first().title, u"Wicket! STH 12/1 (2)"_s);
        QCOMPARE(told.first().body, u"Northport vs Southshore"_s);
        told = events.compare({state(1, u"finished"_s)}, everything);
        QCOMPARE(told.first().title, u"NTH vs STH: result"_s);
        QCOMPARE(told.first().body, u"Northport won by 5 runs"_s);
    }

    // A file edited by hand, or by another version, reads as the defaults where it is wrong.
    void preferencesFile_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("favourite"); // empty: none
        QTest::addColumn<bool>("starts");
        QTest::newRow("as written") << QByteArray("[favourite]\nid=nth\nname=Northport\n"
                                                  "[notify]\nstarts=true\n")
                                    << u"nth"_s << true;
        QTest::newRow("an id at its longest")
            << "[favourite]\nid=" + QByteArray(64, 'n') + "\nname=N\n"
            << QString(64, u'n') << false;
        QTest::newRow("an id past its longest")
            << "[favourite]\nid=" + QByteArray(65, 'n') + "\nname=N\n"
            << u""_s << false;
        QTest::newRow("binary junk") << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10) << u""_s << false;
    }

    void preferencesFile()
    {
        QFETCH(QByteArray, contents);
        QTemporaryDir folder;
        const QString path = folder.filePath(u"settings.ini"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        Preferences preferences(path);
        QTEST(preferences.favouriteTeamID(), "favourite");
        QTEST(preferences.alerts(Preferences::Alert::Starts), "starts");
        QVERIFY(!preferences.alerts(Preferences::Alert::Wickets));

        preferences.setFavourite(TeamInfo{u"sth"_s, u"Southshore"_s, u"STH"_s, u"/sth.png"_s});
        preferences.setAlerts(Preferences::Alert::Results, true);
        Preferences reread(path);
        QCOMPARE(reread.favourite(), preferences.favourite());
        QVERIFY(reread.alerts(Preferences::Alert::Results));
    }
};

QTEST_GUILESS_MAIN(MatchEventsTest)
#include "tst_matchevents.moc"
