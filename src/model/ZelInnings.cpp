#include "ZelInnings.h"

#include "JsonDecoding.h"

namespace {

// Lines themselves never fail, but each must at least be an object.
template <typename Entry>
Result<QList<Entry>> decodeEntries(const JsonDecoding::Object &innings, std::string_view key,
                                   const KeyPath &inningsPath)
{
    return JsonDecoding::list<Entry>(
        JsonDecoding::member(innings, key), KeyPath(inningsPath, key),
        [](const JsonDecoding::Element &value, const KeyPath &path) -> Result<Entry> {
            return JsonDecoding::object(value, path).map(&Entry::fromJson);
        });
}

} // namespace

Result<ZelInnings> ZelInnings::fromJson(const simdjson::dom::element &value, const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const JsonDecoding::Object &o = object.value();

    const std::string_view numberKey = "inningsNo";
    auto number =
        JsonDecoding::integer(JsonDecoding::member(o, numberKey), KeyPath(path, numberKey));
    if (!number.isOk())
        return number.error();

    const std::string_view teamKey = "battingTeamName";
    auto team = JsonDecoding::string(JsonDecoding::member(o, teamKey), KeyPath(path, teamKey));
    if (!team.isOk())
        return team.error();

    auto batting = decodeEntries<ZelBattingEntry>(o, "batting", path);
    if (!batting.isOk())
        return batting.error();
    auto bowling = decodeEntries<ZelBowlingEntry>(o, "bowling", path);
    if (!bowling.isOk())
        return bowling.error();

    return ZelInnings{number.value(), std::move(team).value(), std::move(batting).value(),
                      std::move(bowling).value()};
}
