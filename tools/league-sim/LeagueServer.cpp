#include "LeagueServer.h"

#include "LogoArt.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace {

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

HttpReply notFound()
{
    return HttpReply::json(R"({"error": "not found"})", 404);
}

} // namespace

LeagueServer::LeagueServer(League &league, Clock clock, FaultInjector faults, IngestSink &ingest,
                           QObject *parent)
    : QObject(parent)
    , m_league(league)
    , m_clock(std::move(clock))
    , m_faults(faults)
    , m_ingest(ingest)
    , m_listener([this](const HttpRequest &request, QTcpSocket *socket) {
        handleRequest(request, socket);
    })
{
}

bool LeagueServer::start(quint16 port, QString *error)
{
    if (!m_listener.listen(port, error))
        return false;
    m_league.setOrigin(origin());

    for (const LeagueTeam &team : m_league.teams()) {
        const QString location = m_league.logoLocation(team);
        const QString path = QUrl(location).path();
        const bool svg = path.endsWith(QLatin1StringView(".svg"));
        m_files.insert(path, HttpReply{200,
                                       svg ? LogoArt::svg(team) : LogoArt::png(team),
                                       svg ? "image/svg+xml" : "image/png",
                                       {}});
    }
    const QString feed = QStringLiteral(
                             R"xml(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
  <channel>
    <title>Zel Menu Bar</title>
    <item>
      <title>Version %1</title>
      <link>%2/zel/</link>
      <sparkle:version>%1</sparkle:version>
      <sparkle:shortVersionString>%1</sparkle:shortVersionString>
      <enclosure url="%2/zel/zel-menubar-%1.deb" type="application/vnd.debian.binary-package"/>
    </item>
  </channel>
</rss>
)xml")
                             .arg(m_announcedVersion.toHtmlEscaped(), origin());
    m_files.insert(QStringLiteral("/zel/appcast.xml"),
                   HttpReply{200, feed.toUtf8(), "application/rss+xml", {}});
    m_files.insert(QStringLiteral("/zel/"),
                   HttpReply{200,
                             "<!doctype html><title>Zel Menu Bar</title><h1>Zel Menu Bar</h1>"
                             "<p id=feedback>Feedback and bug reports: thank you!</p>"
                             "<p id=donate>Support the app: thank you!</p>",
                             "text/html; charset=utf-8",
                             {}});
    return true;
}

QString LeagueServer::origin() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_listener.port());
}

HttpReply LeagueServer::scoreServiceReply(const QString &path, Kind *kind) const
{
    static const QRegularExpression scorecard(
        QStringLiteral("^/api/matches/(-?\\d{1,18})/scorecard$"));
    const QDateTime now = m_clock();
    *kind = Kind::MatchList;
    if (path == QLatin1StringView("/api/matches/today"))
        return HttpReply::json(compact(m_league.todayJson(now)));
    if (path == QLatin1StringView("/api/matches/upcoming"))
        return HttpReply::json(compact(m_league.upcomingJson(now)));
    if (path == QLatin1StringView("/api/matches/results"))
        return HttpReply::json(compact(m_league.resultsJson(now)));
    *kind = Kind::Scorecard;
    if (const auto match = scorecard.match(path); match.hasMatch()) {
        const auto card = m_league.scorecardJson(match.captured(1).toLongLong(), now);
        return card ? HttpReply::json(compact(*card)) : notFound();
    }
    *kind = Kind::Other;
    return m_files.value(path, notFound());
}

void LeagueServer::handleRequest(const HttpRequest &request, QTcpSocket *socket)
{
    static const QRegularExpression ingest(QStringLiteral("^/v2/(namespace/[^/]+/)?$"));
    const QString path = request.url.path();
    if (ingest.match(path).hasMatch()) {
        if (request.method != "POST")
            HttpReply::text(405, "POST a JSON array of signals").writeTo(socket);
        else
            HttpReply::json("{}",
                            m_ingest.receive(request.headers.value("content-type"), request.body))
                .writeTo(socket);
        return;
    }
    if (path == QLatin1StringView("/sim/ingest-status") && request.method == "PUT") {
        bool isNumber = false;
        const int status = request.body.trimmed().toInt(&isNumber);
        if (!isNumber || status < 100 || status > 599) {
            HttpReply::text(400, "PUT a status code from 100 to 599").writeTo(socket);
        } else {
            m_ingest.setStatus(status);
            HttpReply::text(200, "ingest status " + QByteArray::number(status)).writeTo(socket);
        }
        return;
    }
    if (path == QLatin1StringView("/sim/clock") && m_jump && request.method == "PUT") {
        const QDateTime moment =
            QDateTime::fromString(QString::fromUtf8(request.body.trimmed()), Qt::ISODate);
        if (!moment.isValid() || moment.timeSpec() == Qt::LocalTime) {
            HttpReply::text(400, "PUT an ISO 8601 moment with an offset").writeTo(socket);
        } else {
            m_jump(moment);
            HttpReply::text(200, "clock set").writeTo(socket);
        }
        return;
    }
    if (request.method != "GET") {
        HttpReply::text(405, "only GET is served here").writeTo(socket);
        return;
    }
    Kind kind;
    HttpReply reply = scoreServiceReply(path, &kind);
    const auto latency = m_faults.latency();
    if (latency.count() > 0) {
        QTimer::singleShot(latency, socket,
                           [this, socket, reply, kind] { sendWithFaults(socket, reply, kind); });
    } else {
        sendWithFaults(socket, reply, kind);
    }
}

void LeagueServer::sendWithFaults(QTcpSocket *socket, HttpReply reply, Kind kind)
{
    switch (m_faults.next()) {
    case FaultInjector::Fault::Fail:
        HttpReply::json(R"({"error": "the score service is unavailable"})",
                        m_faults.failureStatus())
            .writeTo(socket);
        return;
    case FaultInjector::Fault::Drop:
        reply.writeTruncatedTo(socket);
        return;
    case FaultInjector::Fault::Garbage:
        if (kind != Kind::Other && reply.status == 200)
            reply.body = m_faults.garbage(reply.body, kind == Kind::MatchList);
        break;
    case FaultInjector::Fault::Endless:
        reply.writeEndlesslyTo(socket);
        return;
    case FaultInjector::Fault::Trickle:
        reply.writeSlowlyTo(socket);
        return;
    case FaultInjector::Fault::None:
        break;
    }
    reply.writeTo(socket);
}
