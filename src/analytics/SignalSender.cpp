#include "SignalSender.h"

#include "BoundedDownload.h"
#include "TelemetryError.h"
#include "TelemetryManagerConfiguration.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStringDecoder>
#include <QTimer>

using namespace std::chrono_literals;

namespace {
// The ingest answers with a few bytes; a body past this, or one that takes longer, is not it.
constexpr BoundedDownload::Limits answerLimits{64 * 1024, 30s};
constexpr int transferTimeoutMs = 15000;
} // namespace

SignalSender::SignalSender(std::shared_ptr<Cache> cache,
                           std::shared_ptr<TelemetryManagerConfiguration> configuration,
                           std::optional<QUrl> serviceURL)
    : m_cache(std::move(cache))
    , m_configuration(std::move(configuration))
    , m_serviceURL(std::move(serviceURL))
{
}

SignalSender::~SignalSender()
{
    for (const QList<SignalPostBody> &batch : std::as_const(m_inFlight))
        m_cache->push(batch);
}

void SignalSender::start()
{
    m_timer = new QTimer(this);
    connect(m_timer, &QTimer::timeout, this, &SignalSender::attemptToSendNextBatch);
    m_timer->start(sendIntervalMs);
}

void SignalSender::attemptToSendNextBatch()
{
    // Nothing leaves the machine while analytics are off or in preview, not even what an earlier
    // run kept.
    if (m_configuration->analyticsDisabled.get() || m_configuration->swiftUIPreviewMode())
        return;
    log(LogLevel::Debug, QStringLiteral("Current signal cache count: %1").arg(m_cache->count()));
    QList<SignalPostBody> batch = m_cache->pop();
    if (batch.isEmpty())
        return;
    log(LogLevel::Info, QStringLiteral("Sending %1 signals leaving a cache of %2 signals")
                            .arg(batch.size())
                            .arg(m_cache->count()));
    if (!m_serviceURL) {
        log(LogLevel::Error, QStringLiteral("Unable to construct signal API URL for namespace ") +
                                 m_configuration->namespace_.value_or(QString()));
        log(LogLevel::Error,
            TelemetryError{TelemetryError::Kind::InvalidEndpointUrl}.description());
        m_cache->push(batch);
        return;
    }
    QJsonArray records;
    for (const SignalPostBody &record : std::as_const(batch))
        records.append(record.toWireJson());
    QNetworkRequest request(*m_serviceURL);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setTransferTimeout(transferTimeoutMs);
    // Made for the batches under way and gone with the last of them: a manager keeps a thread
    // of its own, and batches are minutes apart.
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkReply *reply =
        m_network->post(request, QJsonDocument(records).toJson(QJsonDocument::Compact));
    m_inFlight.insert(reply, std::move(batch));
    BoundedDownload::start(
        reply, answerLimits,
        [this](QNetworkReply &done, BoundedDownload::Outcome outcome, const QByteArray &body) {
            finished(done, outcome == BoundedDownload::Outcome::Finished, body);
        });
}

void SignalSender::finished(QNetworkReply &reply, bool complete, const QByteArray &body)
{
    const QList<SignalPostBody> batch = m_inFlight.take(&reply);
    if (m_inFlight.isEmpty()) {
        m_network->deleteLater();
        m_network = nullptr;
    }
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    QString failure;
    if (!complete)
        failure = QStringLiteral("The ingest's answer was too large or too slow");
    else if (reply.error() != QNetworkReply::NoError &&
             (!status.isValid() || reply.error() < QNetworkReply::ContentAccessDenied))
        failure = reply.errorString(); // no answer, or one cut short
    else if (const auto error = TelemetryError::statusCodeError(
                 status.isValid() ? std::optional(status.toInt()) : std::nullopt))
        failure = error->description();
    if (!failure.isEmpty()) {
        log(LogLevel::Error, failure);
        m_cache->push(batch);
        return;
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(body);
    if (!utf8.hasError())
        log(LogLevel::Debug, text);
}

void SignalSender::log(LogLevel level, const QString &message) const
{
    m_configuration->log(level, message);
}
