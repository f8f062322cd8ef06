#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Stands in for the analytics ingest service: every JSON array it accepts becomes one line of a
// JSON-lines file.
class IngestSink {
public:
    // An empty path accepts posts without keeping them.
    IngestSink(const QString &path, int status);

    bool open(QString *error);
    // Keeps the batch and returns the status to answer with, or 400 when it is not a JSON
    // array sent as such.
    int receive(const QByteArray &contentType, const QByteArray &body);
    // Lets a test make the ingest fail and recover while the simulator runs.
    void setStatus(int status) { m_status = status; }

private:
    QFile m_file;
    int m_status;
};
