#pragma once

#include "FaultInjector.h"
#include "HttpListener.h"
#include "HttpReply.h"
#include "IngestSink.h"
#include "League.h"

#include <functional>
#include <QHash>

// Serves a league exactly as the score service would, plus team logos, an analytics ingest
// sink and a stand-in for the product's web site (its pages and update feed), all on 127.0.0.1.
class LeagueServer : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    LeagueServer(League &league, Clock clock, FaultInjector faults, IngestSink &ingest,
                 QObject *parent = nullptr);

    // Listens on 127.0.0.1 (port 0: any free port); false with a reason when that fails.
    bool start(quint16 port, QString *error);
    QString origin() const;
    // The version the update feed at /zel/appcast.xml announces; set before start().
    void setAnnouncedVersion(const QString &version) { m_announcedVersion = version; }
    // Lets PUT /sim/clock move the league's time; without it the clock cannot be moved.
    void setClockControl(std::function<void(const QDateTime &)> jump) { m_jump = std::move(jump); }

private:
    void handleRequest(const HttpRequest &request, QTcpSocket *socket);
    enum class Kind { MatchList, Scorecard, Other };
    HttpReply scoreServiceReply(const QString &path, Kind *kind) const;
    void sendWithFaults(QTcpSocket *socket, HttpReply reply, Kind kind);

    League &m_league;
    Clock m_clock;
    std::function<void(const QDateTime &)> m_jump;
    FaultInjector m_faults;
    IngestSink &m_ingest;
    QHash<QString, HttpReply> m_files; // logos and the web site's pages, by path
    QString m_announcedVersion = QStringLiteral("0.2.0");
    HttpListener m_listener;
};
