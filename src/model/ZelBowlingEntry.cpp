#include "ZelBowlingEntry.h"

#include "EntryFields.h"

ZelBowlingEntry ZelBowlingEntry::fromJson(const simdjson::dom::object &object)
{
    ZelBowlingEntry entry;
    entry.name = EntryFields::trimmedName(object);
    entry.overs = EntryFields::text(object, "overs", QStringLiteral("0"));
    entry.maidens = EntryFields::count(object, "maidens");
    entry.runs = EntryFields::count(object, "runs");
    entry.wickets = EntryFields::count(object, "wickets");
    entry.economy = EntryFields::text(object, "economy", QStringLiteral("-"));
    return entry;
}
