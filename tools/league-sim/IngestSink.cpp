#include "IngestSink.h"

#include <QJsonDocument>

IngestSink::IngestSink(const QString &path, int status)
    : m_file(path)
    , m_status(status)
{
}

bool IngestSink::open(QString *error)
{
    if (m_file.fileName().isEmpty())
        return true;
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return true;
    *error = QStringLiteral("cannot open the ingest log %1: %2")
                 .arg(m_file.fileName(), m_file.errorString());
    return false;
}

int IngestSink::receive(const QByteArray &contentType, const QByteArray &body)
{
    const QJsonDocument batch = QJsonDocument::fromJson(body);
    if (!contentType.startsWith("application/json") || !batch.isArray())
        return 400;
    // The log holds what the service accepted; a refused batch comes again.
    if (m_file.isOpen() && m_status >= 200 && m_status <= 299) {
        m_file.write(batch.toJson(QJsonDocument::Compact) + '\n');
        m_file.flush();
    }
    return m_status;
}
