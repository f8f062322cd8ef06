#include "BoundedDownload.h"

#include <QNetworkReply>

void BoundedDownload::start(QNetworkReply *reply, Limits limits, Done done)
{
    new BoundedDownload(reply, limits, std::move(done));
}

BoundedDownload::BoundedDownload(QNetworkReply *reply, Limits limits, Done done)
    : QObject(reply)
    , m_reply(reply)
    , m_limits(limits)
    , m_done(std::move(done))
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { fail(Outcome::DeadlinePassed); });
    m_deadline.start(m_limits.deadline);
    connect(reply, &QNetworkReply::metaDataChanged, this, [this] {
        const QVariant declared = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (declared.isValid() && declared.toLongLong() > m_limits.maximumBytes)
            fail(Outcome::TooLarge);
    });
    connect(reply, &QNetworkReply::readyRead, this, &BoundedDownload::readAvailable);
    connect(reply, &QNetworkReply::finished, this, &BoundedDownload::finish);
}

void BoundedDownload::readAvailable()
{
    if (m_outcome != Outcome::Finished)
        return;
    const qint64 room = m_limits.maximumBytes - m_body.size();
    if (m_reply->bytesAvailable() > room) {
        fail(Outcome::TooLarge);
        return;
    }
    m_body += m_reply->readAll();
}

void BoundedDownload::fail(Outcome outcome)
{
    if (m_outcome != Outcome::Finished)
        return;
    m_outcome = outcome;
    m_body.clear();
    m_body.squeeze();
    if (!m_reply->isFinished())
        m_reply->abort(); // finishes the reply, which calls finish()
}

void BoundedDownload::finish()
{
    readAvailable();
    m_deadline.stop();
    QNetworkReply *reply = m_reply;
    Done done = std::move(m_done);
    const Outcome outcome = m_outcome;
    QByteArray body = outcome == Outcome::Finished ? std::move(m_body) : QByteArray();
    reply->deleteLater();
    if (done)
        done(*reply, outcome, std::move(body));
}
