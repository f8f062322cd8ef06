#include "ZelBowlingEntry.h"

#include "EntryFields.h"

#include <QJsonObject>

ZelBowlingEntry ZelBowlingEntry::fromJson(const QJsonObject &object)
{
    ZelBowlingEntry entry;
    entry.name = EntryFields::trimmedName(object);
    entry.overs = EntryFields::text(object, QLatin1StringView("overs"), QStringLiteral("0"));
    entry.maidens = EntryFields::count(object, QLatin1StringView("maidens"));
    entry.runs = EntryFields::count(object, QLatin1StringView("runs"));
    entry.wickets = EntryFields::count(object, QLatin1StringView("wickets"));
    entry.economy = EntryFields::text(object, QLatin1StringView("economy"), QStringLiteral("-"));
    return entry;
}
