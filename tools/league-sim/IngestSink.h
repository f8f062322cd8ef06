#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Stands in for the analytics ingest service: every JSON array posted to it becomes one line of
// a JSON-lines file.
class IngestSink {
public:
    // An empty path accepts posts without keeping them.
    IngestSink(const QString &path, int status);

    bool open(QString *error);
    // Keeps the batch and returns the status to answer with, or 400 when it is not an array.
    int receive(const QByteArray &body);

private:
    QFile m_file;
    int m_status;
};
