#pragma once

#include "Result.h"
#include "ZelMatch.h"
#include "ZelScorecard.h"

#include <chrono>
#include <functional>
#include <memory>
#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrentRun>
#include <QThreadPool>

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
// when the client is destroyed are dropped. Bodies are capped in size and in total time, and
// decoded off this thread.
class APIClient : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultTimeout{15000};
    static inline const QString errorDomain = QStringLiteral("APIClient");
    static inline const QString transportErrorDomain = QStringLiteral("Network");
    // Far beyond anything real, small enough that a runaway server cannot hurt.
    static constexpr qint64 matchListLimit = 8 * 1024 * 1024;
    static constexpr qint64 scorecardLimit = 2 * 1024 * 1024;
    // A league has a few dozen matches a season; what is past this is dropped before it reaches
    // the lists and the title.
    static constexpr qsizetype maximumMatches = 500;

    template <typename T> using Completion = std::function<void(Result<T>)>;
    using MatchesCompletion = Completion<QList<ZelMatch>>;

    explicit APIClient(QString baseURL, std::chrono::milliseconds timeout = defaultTimeout,
                       QObject *parent = nullptr);
    ~APIClient() override;

    void fetchTodayMatches(MatchesCompletion completion);
    void fetchUpcomingMatches(MatchesCompletion completion);
    void fetchResultMatches(MatchesCompletion completion);
    void fetchScorecard(qint64 matchID, Completion<ZelScorecard> completion);

    // Downloads the URL and decodes its body into Record on a pool thread: a large list takes
    // long enough to decode that the status item would stop answering meanwhile.
    template <JsonDecodable Record>
    void fetch(const QString &url, qint64 maximumBytes, Completion<Record> completion)
    {
        get(url, maximumBytes, [this, completion = std::move(completion)](Result<QByteArray> body) {
            if (!body.isOk()) {
                completion(body.error());
                return;
            }
            // A watcher owned by this client, not a continuation with a context: the client may
            // be destroyed while the decode runs, and the watcher then takes the answer with it.
            auto *watcher = new QFutureWatcher<std::optional<Result<Record>>>(this);
            connect(watcher, &QFutureWatcherBase::finished, this, [watcher, completion] {
                watcher->deleteLater();
                completion(*watcher->result());
            });
            watcher->setFuture(QtConcurrent::run(decodePool(), [bytes = std::move(body).value()] {
                return std::optional(Record::fromJson(bytes));
            }));
        });
    }

    QString scorecardURL(qint64 matchID) const;
    // One thread for every client's decoding, which ends soon after the last answer, and the
    // parser's buffers with it: answers come half a minute or more apart.
    static QThreadPool *decodePool();

    // The body of any 2xx answer of at most maximumBytes, with the same timeouts and error texts.
    void get(const QString &url, qint64 maximumBytes, Completion<QByteArray> completion);

private:
    void fetchMatches(const QString &path, MatchesCompletion completion);

    QString m_baseURL;
    std::chrono::milliseconds m_timeout; // of inactivity; the whole answer may take twice that
    // Shared by every client on this thread: each manager runs an HTTP thread of its own.
    std::shared_ptr<QNetworkAccessManager> m_network;
};
