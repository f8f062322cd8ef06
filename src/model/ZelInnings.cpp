#include "ZelInnings.h"

#include "JsonDecoding.h"

namespace {

// Lines themselves never fail, but each must at least be an object.
template <typename Entry>
Result<QList<Entry>> decodeEntries(const QJsonObject &innings, QLatin1StringView key,
                                   const KeyPath &inningsPath)
{
    return JsonDecoding::list<Entry>(
        innings.value(key), KeyPath(inningsPath, key),
        [](const QJsonValue &value, const KeyPath &path) -> Result<Entry> {
            return JsonDecoding::object(value, path).map(&Entry::fromJson);
        });
}

} // namespace

Result<ZelInnings> ZelInnings::fromJson(const QJsonValue &value, const KeyPath &path)
{
    auto object = JsonDecoding::object(value, path);
    if (!object.isOk())
        return object.error();
    const QJsonObject &o = object.value();

    const QLatin1StringView numberKey("inningsNo");
    auto number = JsonDecoding::integer(o.value(numberKey), KeyPath(path, numberKey));
    if (!number.isOk())
        return number.error();

    const QLatin1StringView teamKey("battingTeamName");
    auto team = JsonDecoding::string(o.value(teamKey), KeyPath(path, teamKey));
    if (!team.isOk())
        return team.error();

    auto batting = decodeEntries<ZelBattingEntry>(o, QLatin1StringView("batting"), path);
    if (!batting.isOk())
        return batting.error();
    auto bowling = decodeEntries<ZelBowlingEntry>(o, QLatin1StringView("bowling"), path);
    if (!bowling.isOk())
        return bowling.error();

    return ZelInnings{number.value(), std::move(team).value(), std::move(batting).value(),
                      std::move(bowling).value()};
}
