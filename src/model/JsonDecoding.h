#pragma once

#include "KeyPath.h"
#include "Result.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <optional>

// Strict building blocks for decoders: each either yields the value or an error that names the
// key path and what was found there.
namespace JsonDecoding {

inline const QString errorDomain = QStringLiteral("ZelDecoding");

enum ErrorCode { MalformedJson = 1, MissingValue = 2, WrongType = 3 };

// The document's top-level object or array.
Result<QJsonValue> parse(const QByteArray &json);

Result<QJsonObject> object(const QJsonValue &value, const KeyPath &path);
Result<QJsonArray> array(const QJsonValue &value, const KeyPath &path);
Result<qint64> integer(const QJsonValue &value, const KeyPath &path);
Result<QString> string(const QJsonValue &value, const KeyPath &path);

// An array decoded element by element; the first failing element fails the whole list.
template <typename Element, typename Decode>
Result<QList<Element>> list(const QJsonValue &value, const KeyPath &path, Decode decodeElement)
{
    auto elements = array(value, path);
    if (!elements.isOk())
        return elements.error();
    QList<Element> decoded;
    decoded.reserve(elements.value().size());
    for (qsizetype i = 0; i < elements.value().size(); ++i) {
        Result<Element> element = decodeElement(elements.value().at(i), KeyPath(path, i));
        if (!element.isOk())
            return element.error();
        decoded.append(std::move(element).value());
    }
    return decoded;
}

// A whole document decoded into a record with a static fromJson(QJsonValue).
template <typename Record> Result<Record> document(const QByteArray &json)
{
    auto root = parse(json);
    if (!root.isOk())
        return root.error();
    return Record::fromJson(root.value());
}

// A JSON number that holds an exact integer (7 and 7.0 do, 7.5 does not).
std::optional<qint64> exactInteger(const QJsonValue &value);

} // namespace JsonDecoding
