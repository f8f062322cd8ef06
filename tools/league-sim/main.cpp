#include "FaultInjector.h"
#include "IngestSink.h"
#include "League.h"
#include "LeagueServer.h"
#include "SimClock.h"

#include <cstdio>
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QVersionNumber>

namespace {

const char *const description =
    R"(Plays a believable Zel cricket league and serves it on 127.0.0.1 exactly
as the Zel score service would, for running and testing Zel Menu Bar.

Endpoints:
  GET  /api/matches/today            today's matches (India Standard Time) and any live match
  GET  /api/matches/upcoming         upcoming matches from tomorrow on, earliest first
  GET  /api/matches/results          finished matches, latest first
  GET  /api/matches/<id>/scorecard   one match's scorecard
  GET  /logos/<file>, /cdn/logos/<file>   team badges (PNG, one SVG)
  POST /v2/, /v2/namespace/<ns>/     analytics ingest: each JSON array becomes a line of --ingest-log
  PUT  /sim/ingest-status            the status the ingest answers from now on (the body: 500)
  PUT  /sim/clock                    moves the league's time to a moment (the body: 2026-11-22T21:00:00+05:30)

Matches go from upcoming to the toss (30 minutes before the start), through two innings of up to
20 overs with a 15-minute break, ball by ball (one every 40 seconds), to their result.

Scenarios (today's matches, around the --start moment; the season's other days stay):
  season               two matches a day, 14 days either side of today
  live-first-innings   a match ten overs into its first innings
  live-second-innings  a match halfway through the chase
  toss                 the toss has been made, play starts in ten minutes
  rain-delay           an upcoming match held back by rain, with a comment
  next-start-today     the day's match starts in three hours
  todays-result        today's match has finished
  no-match-today       nothing today, fixtures from tomorrow
  empty                no matches at all)";

[[noreturn]] void fail(const QString &message)
{
    std::fprintf(stderr, "zel-league-sim: %s\n", qPrintable(message));
    std::exit(2);
}

double rate(const QCommandLineParser &parser, const QString &name)
{
    bool ok = false;
    const double value = parser.value(name).toDouble(&ok);
    if (!ok || value < 0 || value > 1)
        fail(QStringLiteral("--%1 takes a number from 0 to 1, not \"%2\"")
                 .arg(name, parser.value(name)));
    return value;
}

int integer(const QCommandLineParser &parser, const QString &name, int lowest, int highest)
{
    bool ok = false;
    const int value = parser.value(name).toInt(&ok);
    if (!ok || value < lowest || value > highest)
        fail(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                 .arg(name)
                 .arg(lowest)
                 .arg(highest)
                 .arg(parser.value(name)));
    return value;
}

QDateTime startMoment(const QCommandLineParser &parser)
{
    if (!parser.isSet("start"))
        return QDateTime::currentDateTimeUtc();
    // An explicit offset is required: a moment without one would depend on this machine's zone.
    static const QRegularExpression form(
        QStringLiteral(R"(^\d{4}-\d{2}-\d{2}T\d{2}:\d{2}(:\d{2}(\.\d+)?)?(Z|[+-]\d{2}:\d{2})$)"));
    const QString text = parser.value("start");
    const QDateTime moment = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!form.match(text).hasMatch() || !moment.isValid())
        fail(QStringLiteral("--start takes an ISO 8601 moment with an offset, such as "
                            "2026-04-05T19:30:00+05:30, not \"%1\"")
                 .arg(text));
    return moment;
}

} // namespace

int main(int argc, char *argv[])
{
    // The badges are drawn off screen; no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName("zel-league-sim");

    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromUtf8(description));
    parser.addHelpOption();
    parser.addOptions({
        {"port", "Port on 127.0.0.1; 0 picks a free one. Default 8765.", "port", "8765"},
        {"scenario", "Today's situation (see above). Default season.", "name", "season"},
        {"seed", "Seed for teams, results and faults. Default 1.", "number", "1"},
        {"speed", "Run the league's clock this many times faster. Default 1.", "factor", "1"},
        {"start", "The league's moment at launch (ISO 8601 with offset). Default now.", "moment"},
        {"fail-rate", "Share of answers that are 500 or 503.", "rate", "0"},
        {"drop-rate", "Share of connections dropped mid-body.", "rate", "0"},
        {"garbage-rate", "Share of answers with malformed JSON, a bad matchID or a wrong type.",
         "rate", "0"},
        {"endless-rate", "Share of answers whose body never ends.", "rate", "0"},
        {"trickle-rate", "Share of answers sent one byte a second.", "rate", "0"},
        {"latency", "Delay every score service answer by this many milliseconds.", "ms", "0"},
        {"ingest-log", "Append each analytics batch received to this JSON-lines file.", "file"},
        {"ingest-status", "HTTP status the ingest answers with. Default 200.", "code", "200"},
        {"announce-version", "Version the update feed /zel/appcast.xml offers. Default 0.2.0.",
         "version", "0.2.0"},
    });
    if (!parser.parse(QCoreApplication::arguments()))
        fail(parser.errorText() + QStringLiteral("; see --help"));
    if (parser.isSet("help"))
        parser.showHelp(0);
    if (!parser.positionalArguments().isEmpty())
        fail(QStringLiteral("unexpected argument \"%1\"; see --help")
                 .arg(parser.positionalArguments().first()));

    const auto scenario = League::scenarioNamed(parser.value("scenario"));
    if (!scenario)
        fail(QStringLiteral("unknown scenario \"%1\"; choose one of: %2")
                 .arg(parser.value("scenario"), League::scenarioNames().join(", ")));
    bool ok = false;
    const quint64 seed = parser.value("seed").toULongLong(&ok);
    if (!ok)
        fail(QStringLiteral("--seed takes a whole number, not \"%1\"").arg(parser.value("seed")));
    const double speed = parser.value("speed").toDouble(&ok);
    if (!ok || speed <= 0 || speed > 100000)
        fail(QStringLiteral("--speed takes a number above 0 and up to 100000, not \"%1\"")
                 .arg(parser.value("speed")));
    const FaultInjector::Rates rates{
        rate(parser, "fail-rate"),
        rate(parser, "drop-rate"),
        rate(parser, "garbage-rate"),
        rate(parser, "endless-rate"),
        rate(parser, "trickle-rate"),
        std::chrono::milliseconds(integer(parser, "latency", 0, 600000))};
    if (rates.fail + rates.drop + rates.garbage + rates.endless + rates.trickle > 1)
        fail(QStringLiteral("the fault rates add up to more than 1"));

    const QDateTime start = startMoment(parser);
    League league(*scenario, seed, start);
    IngestSink ingest(parser.value("ingest-log"), integer(parser, "ingest-status", 100, 599));
    QString error;
    if (!ingest.open(&error))
        fail(error);

    SimClock clock(start, speed);
    LeagueServer server(
        league, [&clock] { return clock.now(); }, FaultInjector(rates, seed), ingest);
    if (QVersionNumber::fromString(parser.value("announce-version")).isNull())
        fail(QStringLiteral("--announce-version takes a version such as 1.2.0"));
    server.setAnnouncedVersion(parser.value("announce-version"));
    server.setClockControl([&clock](const QDateTime &moment) { clock.jumpTo(moment); });
    if (!server.start(quint16(integer(parser, "port", 0, 65535)), &error))
        fail(error);

    std::printf("zel-league-sim: serving the \"%s\" scenario on %s\n",
                qPrintable(parser.value("scenario")), qPrintable(server.origin()));
    std::fflush(stdout);
    return app.exec();
}
