#include "JsonDecoding.h"

#include <cmath>

namespace JsonDecoding {
namespace {

QString typeName(const Element &value)
{
    switch (value.type()) {
    case simdjson::dom::element_type::NULL_VALUE:
        return QStringLiteral("null");
    case simdjson::dom::element_type::BOOL:
        return QStringLiteral("a boolean");
    case simdjson::dom::element_type::INT64:
    case simdjson::dom::element_type::UINT64:
    case simdjson::dom::element_type::DOUBLE:
        return QStringLiteral("a number");
    case simdjson::dom::element_type::STRING:
        return QStringLiteral("a string");
    case simdjson::dom::element_type::ARRAY:
        return QStringLiteral("an array");
    case simdjson::dom::element_type::OBJECT:
        break;
    }
    return QStringLiteral("an object");
}

ZelError mismatch(const Member &found, const KeyPath &path, const char *expected)
{
    const QString where = path.toString();
    const QString location = where.isEmpty() ? QStringLiteral("the document") : u'"' + where + u'"';
    const QString problem = found ? QStringLiteral("should be %1 but is %2")
                                        .arg(QLatin1StringView(expected), typeName(*found))
                                  : QStringLiteral("is missing");
    return ZelError{errorDomain, found ? WrongType : MissingValue,
                    QStringLiteral("The score service sent data that could not be read: %1 %2.")
                        .arg(location, problem)};
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

Member member(const Object &object, std::string_view key)
{
    Element value;
    if (object.at_key(key).get(value))
        return std::nullopt;
    return value;
}

bool isAbsent(const Member &value)
{
    return !value || value->is_null();
}

Result<Object> object(const Member &value, const KeyPath &path)
{
    Object result;
    if (value && !value->get_object().get(result))
        return result;
    return mismatch(value, path, "an object");
}

Result<Array> array(const Member &value, const KeyPath &path)
{
    Array result;
    if (value && !value->get_array().get(result))
        return result;
    return mismatch(value, path, "an array");
}

Result<qint64> integer(const Member &value, const KeyPath &path)
{
    if (const auto number = exactInteger(value))
        return *number;
    return mismatch(value, path, "an integer");
}

Result<QString> string(const Member &value, const KeyPath &path)
{
    if (auto result = text(value))
        return *std::move(result);
    return mismatch(value, path, "a string");
}

std::optional<qint64> exactInteger(const Member &value)
{
    if (!value)
        return std::nullopt;
    int64_t integer = 0;
    if (!value->get_int64().get(integer))
        return integer;
    double number = 0;
    if (value->type() != simdjson::dom::element_type::DOUBLE || value->get_double().get(number))
        return std::nullopt;
    // 2^63 itself is out of range; every double below it in magnitude converts exactly.
    constexpr double limit = 9223372036854775808.0;
    if (std::trunc(number) != number || number >= limit || number < -limit)
        return std::nullopt;
    return static_cast<qint64>(number);
}

std::optional<QString> text(const Member &value)
{
    std::string_view result;
    if (!value || value->get_string().get(result))
        return std::nullopt;
    return toQString(result);
}

ZelError malformed(simdjson::error_code error)
{
    return ZelError{errorDomain, MalformedJson,
                    QStringLiteral("The score service sent malformed JSON: %1")
                        .arg(QString::fromUtf8(simdjson::error_message(error)))};
}

QByteArray widenedHugeIntegers(const QByteArray &json)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    // Digits beyond these, by count and then in order, do not fit the parser's 64-bit integers.
    const auto fits = [](QByteArrayView digits, bool negative) {
        const QByteArrayView widest = negative ? "9223372036854775808" : "18446744073709551615";
        return digits.size() < widest.size() ||
               (digits.size() == widest.size() && digits.compare(widest) <= 0);
    };
    QByteArray widened;
    qsizetype copied = 0;
    bool inString = false;
    for (qsizetype at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (inString) {
            if (c == '\\')
                ++at;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"') {
            inString = true;
            continue;
        }
        const bool negative = c == '-';
        if (!negative && !isDigit(c))
            continue;
        const qsizetype first = negative ? at + 1 : at;
        qsizetype end = first;
        while (end < json.size() && isDigit(json[end]))
            ++end;
        const bool real =
            end < json.size() && (json[end] == '.' || json[end] == 'e' || json[end] == 'E');
        if (!real && !fits(QByteArrayView(json).sliced(first, end - first), negative)) {
            widened += QByteArrayView(json).sliced(copied, end - copied);
            widened += ".0";
            copied = end;
        }
        // The rest of a real number (fraction, exponent) is never an integer of its own.
        while (end < json.size() && (isDigit(json[end]) || json[end] == '.' || json[end] == 'e' ||
                                     json[end] == 'E' || json[end] == '+' || json[end] == '-'))
            ++end;
        at = end - 1;
    }
    if (copied == 0)
        return {};
    return widened.append(QByteArrayView(json).sliced(copied));
}

simdjson::dom::parser &parserFor(qsizetype documentSize,
                                 std::unique_ptr<simdjson::dom::parser> &oneOff)
{
    // Allocating a parser's buffers afresh costs more than decoding a typical list, so each
    // thread keeps one for documents of ordinary size.
    constexpr qsizetype reusableCapacity = 1 << 20;
    thread_local simdjson::dom::parser reusable(reusableCapacity);
    if (documentSize <= reusableCapacity)
        return reusable;
    oneOff = std::make_unique<simdjson::dom::parser>();
    return *oneOff;
}

} // namespace JsonDecoding
