#include "JsonDecoding.h"

#include <QCborValue>
#include <QJsonDocument>
#include <QJsonParseError>

namespace JsonDecoding {
namespace {

QString typeName(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("a boolean");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("missing");
}

ZelError mismatch(const QJsonValue &found, const KeyPath &path, const char *expected)
{
    const QString where = path.toString();
    const QString location = where.isEmpty() ? QStringLiteral("the document") : u'"' + where + u'"';
    const bool missing = found.isUndefined();
    return ZelError{errorDomain, missing ? MissingValue : WrongType,
                    QStringLiteral("The score service sent data that could not be read: %1 %2.")
                        .arg(location, missing ? QStringLiteral("is missing")
                                               : QStringLiteral("should be %1 but is %2")
                                                     .arg(QLatin1StringView(expected),
                                                          typeName(found)))};
}

} // namespace

Result<QJsonValue> parse(const QByteArray &json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return ZelError{errorDomain, MalformedJson,
                        QStringLiteral("The score service sent malformed JSON: %1 at byte %2.")
                            .arg(parseError.errorString())
                            .arg(parseError.offset)};
    }
    if (document.isArray())
        return QJsonValue(document.array());
    return QJsonValue(document.object());
}

Result<QJsonObject> object(const QJsonValue &value, const KeyPath &path)
{
    if (value.isObject())
        return value.toObject();
    return mismatch(value, path, "an object");
}

Result<QJsonArray> array(const QJsonValue &value, const KeyPath &path)
{
    if (value.isArray())
        return value.toArray();
    return mismatch(value, path, "an array");
}

Result<qint64> integer(const QJsonValue &value, const KeyPath &path)
{
    if (const auto number = exactInteger(value))
        return *number;
    return mismatch(value, path, "an integer");
}

Result<QString> string(const QJsonValue &value, const KeyPath &path)
{
    if (value.isString())
        return value.toString();
    return mismatch(value, path, "a string");
}

std::optional<qint64> exactInteger(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const QCborValue number = QCborValue::fromJsonValue(value);
    if (!number.isInteger())
        return std::nullopt;
    return number.toInteger();
}

} // namespace JsonDecoding
