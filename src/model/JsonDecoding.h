#pragma once

#include "KeyPath.h"
#include "Result.h"

#include <memory>
#include <optional>
#include <QByteArray>
#include <QList>
#include <simdjson.h>
#include <string_view>

// Strict building blocks for the decoders: each either yields the value or an error that names
// the key path and what was found there. A missing key is an empty optional.
namespace JsonDecoding {

using Element = simdjson::dom::element;
using Object = simdjson::dom::object;
using Array = simdjson::dom::array;
using Member = std::optional<Element>;

inline const QString errorDomain = QStringLiteral("ZelDecoding");

enum ErrorCode { MalformedJson = 1, MissingValue = 2, WrongType = 3 };

Member member(const Object &object, std::string_view key);
bool isAbsent(const Member &value); // missing or null

Result<Object> object(const Member &value, const KeyPath &path);
Result<Array> array(const Member &value, const KeyPath &path);
Result<qint64> integer(const Member &value, const KeyPath &path);
Result<QString> string(const Member &value, const KeyPath &path);

// A number that holds an exact 64-bit integer: 7 and 7.0 do, 7.5 and 2^63 do not.
std::optional<qint64> exactInteger(const Member &value);
std::optional<QString> text(const Member &value);

ZelError malformed(simdjson::error_code error);

// The document with every integer too wide for 64 bits written as a real number ("...0.0"), so
// that it reads as a number of the wrong kind instead of failing the whole document; empty when
// there is none.
QByteArray widenedHugeIntegers(const QByteArray &json);

// The calling thread's reusable parser, or for an unusually large document a one-off parser
// held in oneOff, so that one huge answer does not pin its buffers for the life of the thread.
simdjson::dom::parser &parserFor(qsizetype documentSize,
                                 std::unique_ptr<simdjson::dom::parser> &oneOff);

// An array decoded element by element; the first failing element fails the whole list.
template <typename Element, typename Decode>
Result<QList<Element>> list(const Member &value, const KeyPath &path, Decode decodeElement)
{
    auto elements = array(value, path);
    if (!elements.isOk())
        return elements.error();
    QList<Element> decoded;
    decoded.reserve(static_cast<qsizetype>(elements.value().size()));
    qsizetype index = 0;
    for (const JsonDecoding::Element element : elements.value()) {
        Result<Element> result = decodeElement(element, KeyPath(path, index++));
        if (!result.isOk())
            return result.error();
        decoded.append(std::move(result).value());
    }
    return decoded;
}

// A whole document decoded into a record with a static fromJson(Element, KeyPath).
template <typename Record> Result<Record> document(const QByteArray &json)
{
    std::unique_ptr<simdjson::dom::parser> oneOff;
    simdjson::dom::parser &parser = parserFor(json.size(), oneOff);
    Element root;
    auto error = parser.parse(json.constData(), static_cast<size_t>(json.size())).get(root);
    // simdjson 3.0 calls an integer past 64 bits a NUMBER_ERROR, later versions a BIGINT_ERROR:
    // any failure retries with such integers made reals, when the document has one.
    if (error) {
        const QByteArray widened = widenedHugeIntegers(json);
        if (!widened.isEmpty())
            error =
                parser.parse(widened.constData(), static_cast<size_t>(widened.size())).get(root);
    }
    if (error)
        return malformed(error);
    return Record::fromJson(root, KeyPath());
}

} // namespace JsonDecoding
