#include "MatchesResponse.h"

#include "JsonDecoding.h"

Result<MatchesResponse> MatchesResponse::fromJson(const QJsonValue &value, const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const QLatin1StringView matchesKey("matches");
    return JsonDecoding::list<ZelMatch>(object.value().value(matchesKey),
                                        KeyPath(path, matchesKey), &ZelMatch::fromJson)
        .map([](QList<ZelMatch> matches) { return MatchesResponse{std::move(matches)}; });
}

Result<MatchesResponse> MatchesResponse::fromJson(const QByteArray &json)
{
    return JsonDecoding::document<MatchesResponse>(json);
}
