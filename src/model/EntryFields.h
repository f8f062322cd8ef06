#pragma once

#include <QJsonObject>
#include <QLatin1StringView>
#include <QString>

// Forgiving reads shared by the scorecard's batting and bowling lines.
namespace EntryFields {

// The text with leading and trailing spaces and tabs removed; line breaks stay.
QString trimmedName(const QJsonObject &object);

QString text(const QJsonObject &object, QLatin1StringView key, const QString &fallback);

// An exact integer as decimal text, "0" otherwise.
QString count(const QJsonObject &object, QLatin1StringView key);

} // namespace EntryFields
