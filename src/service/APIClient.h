#pragma once

#include "Result.h"
#include "ZelConfig.h"
#include "ZelMatch.h"
#include "ZelScorecard.h"

#include <chrono>
#include <functional>
#include <QObject>

class QNetworkAccessManager;

template <typename Record>
concept JsonDecodable = requires(const QByteArray &json)
{
    {
        Record::fromJson(json)
        } -> std::same_as<Result<Record>>;
};

// The only code that talks to the score service: plain GETs, no retries, no caching.
// Every completion is called exactly once, on this object's thread and never before the call
// returns, except the "Invalid URL" failure, which completes at once. Completions still pending
// when the client is destroyed are dropped.
class APIClient : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultTimeout{15000};
    static inline const QString errorDomain = QStringLiteral("APIClient");
    static inline const QString transportErrorDomain = QStringLiteral("Network");

    template <typename T> using Completion = std::function<void(Result<T>)>;
    using MatchesCompletion = Completion<QList<ZelMatch>>;

    explicit APIClient(QString baseURL = QString::fromLatin1(ZelConfig::scoreServiceURL),
                       std::chrono::milliseconds timeout = defaultTimeout,
                       QObject *parent = nullptr);

    void fetchTodayMatches(MatchesCompletion completion);
    void fetchUpcomingMatches(MatchesCompletion completion);
    void fetchResultMatches(MatchesCompletion completion);
    void fetchScorecard(qint64 matchID, Completion<ZelScorecard> completion);

    // Downloads the URL and decodes its body into Record.
    template <JsonDecodable Record> void fetch(const QString &url, Completion<Record> completion)
    {
        get(url, [completion = std::move(completion)](Result<QByteArray> body) {
            if (!body.isOk())
                completion(body.error());
            else
                completion(Record::fromJson(body.value()));
        });
    }

    QString scorecardURL(qint64 matchID) const;

    // The body of any 2xx answer, with the same timeout and error texts.
    void get(const QString &url, Completion<QByteArray> completion);

private:
    void fetchMatches(const QString &path, MatchesCompletion completion);

    QString m_baseURL;
    std::chrono::milliseconds m_timeout;
    QNetworkAccessManager *m_network;
};
