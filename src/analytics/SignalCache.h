#pragma once

#include "LogHandler.h"

#include <mutex>
#include <optional>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QSaveFile>
#include <shared_mutex>

// Records waiting to be sent, oldest first; any thread may push and pop. They reach the disk
// only through backupCache(), and the file is read and removed when the next cache is made.
template <typename Record> class SignalCache {
public:
    static constexpr qsizetype maximumNumberOfSignalsToPopAtOnce = 100;
    // A cache file is a few hundred kilobytes at most; anything past this is not one.
    static constexpr qint64 maximumFileSize = 8 * 1024 * 1024;
    static inline const QString fileName = QStringLiteral("telemetrysignalcache");

    SignalCache(const QString &directory, std::optional<LogHandler> logHandler)
        : m_path(QDir(directory).filePath(fileName))
        , m_logHandler(std::move(logHandler))
    {
        log(LogLevel::Info, QStringLiteral("Loading Telemetry cache from: ") + m_path);
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QByteArray data =
            file.size() <= maximumFileSize ? file.read(maximumFileSize) : QByteArray();
        file.remove();
        m_cachedSignals = decode(data);
        log(LogLevel::Info, QStringLiteral("Loaded %1 signals").arg(m_cachedSignals.size()));
    }

    void push(Record record)
    {
        std::unique_lock locker(m_lock);
        m_cachedSignals.append(std::move(record));
    }

    void push(const QList<Record> &records)
    {
        std::unique_lock locker(m_lock);
        m_cachedSignals.append(records);
    }

    QList<Record> pop()
    {
        std::unique_lock locker(m_lock);
        const qsizetype taken = qMin(maximumNumberOfSignalsToPopAtOnce, m_cachedSignals.size());
        QList<Record> batch = m_cachedSignals.first(taken);
        m_cachedSignals.remove(0, taken);
        return batch;
    }

    qsizetype count() const
    {
        std::shared_lock locker(m_lock);
        return m_cachedSignals.size();
    }

    // Written whole or not at all: a kill during the write leaves the old file.
    void backupCache()
    {
        std::unique_lock locker(m_lock);
        QJsonArray records;
        for (const Record &record : std::as_const(m_cachedSignals))
            records.append(record.toCacheJson());
        const QByteArray data = QJsonDocument(records).toJson(QJsonDocument::Compact);
        QSaveFile file(m_path);
        if (!QDir().mkpath(QFileInfo(m_path).path()) || !file.open(QIODevice::WriteOnly) ||
            file.write(data) != data.size() || !file.commit()) {
            log(LogLevel::Error, QStringLiteral("Error saving Telemetry cache"));
            return;
        }
        log(LogLevel::Info, QStringLiteral("Saved Telemetry cache %1 of %2 signals")
                                .arg(QLocale::c().formattedDataSize(data.size()))
                                .arg(m_cachedSignals.size()));
    }

private:
    // All or nothing: a file with one record that cannot be read is not trusted at all.
    static QList<Record> decode(const QByteArray &data)
    {
        const QJsonDocument document = QJsonDocument::fromJson(data);
        QList<Record> records;
        for (const QJsonValue value : document.array()) {
            auto record = Record::fromCacheJson(value);
            if (!record)
                return {};
            records.append(std::move(*record));
        }
        return records;
    }

    void log(LogLevel level, const QString &message) const
    {
        if (m_logHandler)
            m_logHandler->log(level, message);
    }

    const QString m_path;
    const std::optional<LogHandler> m_logHandler;
    mutable std::shared_mutex m_lock;
    QList<Record> m_cachedSignals;
};
