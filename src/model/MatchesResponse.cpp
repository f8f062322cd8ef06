#include "MatchesResponse.h"

#include "JsonDecoding.h"

Result<MatchesResponse> MatchesResponse::fromJson(const simdjson::dom::element &value,
                                                  const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const std::string_view matchesKey = "matches";
    return JsonDecoding::list<ZelMatch>(JsonDecoding::member(object.value(), matchesKey),
                                        KeyPath(path, matchesKey), &ZelMatch::fromJson)
        .map([](QList<ZelMatch> decoded) { return MatchesResponse{std::move(decoded)}; });
}

Result<MatchesResponse> MatchesResponse::fromJson(const QByteArray &json)
{
    return JsonDecoding::document<MatchesResponse>(json);
}
