#include "StoredSession.h"

#include <cmath>
#include <limits>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

namespace {
const QString startedKey = QStringLiteral("st");
const QString durationKey = QStringLiteral("dn");

// A number that fits the field, or nothing.
std::optional<qint64> wholeNumber(const QJsonValue &value, qint64 lowest, qint64 highest)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = std::trunc(value.toDouble());
    if (!std::isfinite(number) || number < double(lowest) || number > double(highest))
        return std::nullopt;
    return qint64(number);
}
} // namespace

QByteArray StoredSession::encode(const QList<StoredSession> &sessions)
{
    QJsonArray array;
    for (const StoredSession &session : sessions)
        array.append(QJsonObject{{startedKey, session.startedAt.toSecsSinceEpoch()},
                                 {durationKey, session.durationInSeconds}});
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QList<StoredSession> StoredSession::decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return {};
    // Dates a QDateTime can hold, thousands of years either way.
    constexpr qint64 seconds = 100'000LL * 365 * 86'400;
    QList<StoredSession> sessions;
    for (const QJsonValue entry : document.array()) {
        const auto started = wholeNumber(entry[startedKey], -seconds, seconds);
        const auto duration = wholeNumber(entry[durationKey], std::numeric_limits<int>::min(),
                                          std::numeric_limits<int>::max());
        if (!started || !duration)
            return {};
        sessions.append(
            {QDateTime::fromSecsSinceEpoch(*started, QTimeZone::utc()), int(*duration)});
    }
    return sessions;
}
