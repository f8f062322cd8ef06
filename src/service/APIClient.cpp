#include "APIClient.h"

#include "BoundedDownload.h"
#include "MatchesResponse.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

// Foundation's wording, which users of such apps already know.
QString transportDescription(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::OperationCanceledError:
    case QNetworkReply::TimeoutError:
        return APIClient::tr("The request timed out.");
    case QNetworkReply::ConnectionRefusedError:
        return APIClient::tr("Could not connect to the server.");
    case QNetworkReply::RemoteHostClosedError:
        return APIClient::tr("The network connection was lost.");
    case QNetworkReply::HostNotFoundError:
        return APIClient::tr("A server with the specified hostname could not be found.");
    case QNetworkReply::SslHandshakeFailedError:
        return APIClient::tr(
            "An SSL error has occurred and a secure connection to the server cannot be made.");
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return APIClient::tr("The Internet connection appears to be offline.");
    default:
        return reply.errorString();
    }
}

// Failures below HTTP (no connection, a reset, a timeout), and any error without a status
// line, come from the transport. Any other answer only restates its status code, whatever Qt
// calls it: a 407 sent by the server is "HTTP 407", not a proxy failure.
bool isTransportError(const QNetworkReply &reply, const QVariant &status)
{
    const QNetworkReply::NetworkError error = reply.error();
    if (error == QNetworkReply::NoError)
        return false;
    return !status.isValid() || error < QNetworkReply::ProxyConnectionRefusedError;
}

std::shared_ptr<QNetworkAccessManager> networkOfThisThread()
{
    thread_local std::weak_ptr<QNetworkAccessManager> shared;
    std::shared_ptr<QNetworkAccessManager> network = shared.lock();
    if (!network) {
        network = std::make_shared<QNetworkAccessManager>();
        shared = network;
    }
    return network;
}

} // namespace

APIClient::APIClient(QString baseURL, std::chrono::milliseconds timeout, QObject *parent)
    : QObject(parent)
    , m_baseURL(std::move(baseURL))
    , m_timeout(timeout)
    , m_network(networkOfThisThread())
{
}

APIClient::~APIClient()
{
    // Aborted while the manager they came from is sure to be there.
    qDeleteAll(findChildren<QNetworkReply *>(Qt::FindDirectChildrenOnly));
}

QThreadPool *APIClient::decodePool()
{
    static const std::unique_ptr<QThreadPool> pool = [] {
        auto made = std::make_unique<QThreadPool>();
        made->setMaxThreadCount(1);
        made->setExpiryTimeout(3000);
        return made;
    }();
    return pool.get();
}

void APIClient::fetchTodayMatches(MatchesCompletion completion)
{
    fetchMatches(QStringLiteral("/api/matches/today"), std::move(completion));
}

void APIClient::fetchUpcomingMatches(MatchesCompletion completion)
{
    fetchMatches(QStringLiteral("/api/matches/upcoming"), std::move(completion));
}

void APIClient::fetchResultMatches(MatchesCompletion completion)
{
    fetchMatches(QStringLiteral("/api/matches/results"), std::move(completion));
}

void APIClient::fetchScorecard(qint64 matchID, Completion<ZelScorecard> completion)
{
    fetch<ZelScorecard>(scorecardURL(matchID), scorecardLimit, std::move(completion));
}

QString APIClient::scorecardURL(qint64 matchID) const
{
    return m_baseURL + QStringLiteral("/api/matches/%1/scorecard").arg(matchID);
}

void APIClient::fetchMatches(const QString &path, MatchesCompletion completion)
{
    fetch<MatchesResponse>(m_baseURL + path, matchListLimit,
                           [completion = std::move(completion)](Result<MatchesResponse> response) {
                               completion(std::move(response).map([](MatchesResponse r) {
                                   if (r.matches.size() > maximumMatches)
                                       r.matches.resize(maximumMatches);
                                   return std::move(r.matches);
                               }));
                           });
}

void APIClient::get(const QString &url, qint64 maximumBytes, Completion<QByteArray> completion)
{
    const QUrl parsed(url, QUrl::StrictMode);
    if (!parsed.isValid() || parsed.isRelative() || parsed.host().isEmpty()) {
        completion(ZelError{errorDomain, -1, tr("Invalid URL")});
        return;
    }

    QNetworkRequest request(parsed);
    request.setTransferTimeout(static_cast<int>(m_timeout.count()));
    // The reply belongs to this client: once the client is gone, so is the callback.
    QNetworkReply *pending = m_network->get(request);
    pending->setParent(this);
    BoundedDownload::start(
        pending, {maximumBytes, 2 * m_timeout},
        [completion = std::move(completion)](QNetworkReply &reply, BoundedDownload::Outcome outcome,
                                             QByteArray body) {
            switch (outcome) {
            case BoundedDownload::Outcome::TooLarge:
                completion(ZelError{transportErrorDomain, QNetworkReply::UnknownContentError,
                                    tr("The response was too large.")});
                return;
            case BoundedDownload::Outcome::DeadlinePassed:
                completion(ZelError{transportErrorDomain, QNetworkReply::TimeoutError,
                                    tr("The request timed out.")});
                return;
            case BoundedDownload::Outcome::Finished:
                break;
            }
            const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
            if (isTransportError(reply, status)) {
                completion(
                    ZelError{transportErrorDomain, reply.error(), transportDescription(reply)});
                return;
            }
            const int code = status.isValid() ? status.toInt() : -1;
            if (code < 200 || code > 299 || body.isEmpty()) {
                completion(ZelError{errorDomain, code, QStringLiteral("HTTP %1").arg(code)});
                return;
            }
            completion(std::move(body));
        });
}
