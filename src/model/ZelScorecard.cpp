#include "ZelScorecard.h"

#include "JsonDecoding.h"

Result<ZelScorecard> ZelScorecard::fromJson(const simdjson::dom::element &value,
                                            const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const std::string_view inningsKey = "innings";
    return JsonDecoding::list<ZelInnings>(JsonDecoding::member(object.value(), inningsKey),
                                          KeyPath(path, inningsKey), &ZelInnings::fromJson)
        .map([](QList<ZelInnings> decoded) { return ZelScorecard{std::move(decoded)}; });
}

Result<ZelScorecard> ZelScorecard::fromJson(const QByteArray &json)
{
    return JsonDecoding::document<ZelScorecard>(json);
}
