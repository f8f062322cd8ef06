#pragma once

#include <optional>
#include <QDateTime>
#include <QJsonObject>
#include <QMap>
#include <QString>

// One signal as the ingest service receives it.
struct SignalPostBody {
    QDateTime receivedAt;
    QString appID;
    QString clientUser;
    QString sessionID;
    QString type;
    std::optional<double> floatValue;
    QMap<QString, QString> payload;
    QString isTestMode;

    bool operator==(const SignalPostBody &) const = default;

    // receivedAt as "2026-11-22T18:30:00+0000".
    QJsonObject toWireJson() const;
    // receivedAt as seconds since 2001-01-01 00:00:00 UTC.
    QJsonObject toCacheJson() const;
    // Nothing when a field is missing or of the wrong type.
    static std::optional<SignalPostBody> fromCacheJson(const QJsonValue &value);
    QString description() const;
};
