#include "EntryFields.h"

#include "SpacesAndTabs.h"

namespace EntryFields {

QString trimmedName(const JsonDecoding::Object &object)
{
    return trimSpacesAndTabs(text(object, "name", QString()));
}

QString text(const JsonDecoding::Object &object, std::string_view key, const QString &fallback)
{
    return JsonDecoding::text(JsonDecoding::member(object, key)).value_or(fallback);
}

QString count(const JsonDecoding::Object &object, std::string_view key)
{
    return QString::number(
        JsonDecoding::exactInteger(JsonDecoding::member(object, key)).value_or(0));
}

} // namespace EntryFields
