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
    // A cache file is a few hundred kilobytes at most: of a larger one the newest records are
    // kept up to this size.
    static constexpr qint64 maximumFileSize = 8 * 1024 * 1024;
    // Past this a file is not read whole; its last part, up to maximumFileSize, is.
    static constexpr qint64 largestFileRead = 64 * 1024 * 1024;
    static inline const QString fileName = QStringLiteral("telemetrysignalcache");

    SignalCache(const QString &directory, std::optional<LogHandler> logHandler)
        : m_path(QDir(directory).filePath(fileName))
        , m_logHandler(std::move(logHandler))
    {
        log(LogLevel::Info, QStringLiteral("Loading Telemetry cache from: ") + m_path);
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly))
            return;
        const qint64 size = file.size();
        const bool tailOnly = size > largestFileRead;
        if (tailOnly)
            file.seek(size - maximumFileSize);
        const QByteArray data = file.read(tailOnly ? maximumFileSize : largestFileRead);
        file.remove();
        m_cachedSignals = decode(tailOnly ? fromFirstRecord(data) : data);
        if (tailOnly)
            log(LogLevel::Error,
                QStringLiteral("Dropped the older part of a Telemetry cache of %1 bytes")
                    .arg(size));
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
    // The records that can be read, the newest of them up to maximumFileSize.
    QList<Record> decode(const QByteArray &data) const
    {
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(data, &error);
        if (error.error != QJsonParseError::NoError || !document.isArray()) {
            if (!data.isEmpty())
                log(LogLevel::Error, QStringLiteral("The Telemetry cache is not a list of "
                                                    "signals and was dropped"));
            return {};
        }
        const QJsonArray values = document.array();
        QList<Record> records;
        qsizetype unreadable = 0;
        qsizetype overSize = 0;
        qint64 kept = 0;
        // Only a file past the cap can hold more than fits: the others are not measured.
        const bool mayOverflow = data.size() > maximumFileSize;
        for (qsizetype i = values.size() - 1; i >= 0; --i) {
            auto record = Record::fromCacheJson(values[i]);
            if (!record) {
                ++unreadable;
                continue;
            }
            if (mayOverflow) {
                kept +=
                    QJsonDocument(values[i].toObject()).toJson(QJsonDocument::Compact).size() + 1;
                if (kept > maximumFileSize) {
                    overSize = i + 1;
                    break;
                }
            }
            records.prepend(std::move(*record));
        }
        if (unreadable + overSize > 0)
            log(LogLevel::Error,
                QStringLiteral(
                    "Dropped %1 unreadable and %2 older signals from the Telemetry cache")
                    .arg(unreadable)
                    .arg(overSize));
        return records;
    }

    // The array from the first whole record of a file's last part. A record begins with its
    // first key; inside a text that quote would be escaped, so the first match is a boundary.
    static QByteArray fromFirstRecord(const QByteArray &tail)
    {
        const qsizetype start = tail.indexOf(R"(,{"appID":)");
        return start < 0 ? QByteArray() : '[' + tail.mid(start + 1);
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
