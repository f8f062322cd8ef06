#include "EntryFields.h"

namespace EntryFields {

QString trimmedName(const JsonDecoding::Object &object)
{
    const QString name = text(object, "name", QString());
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = name.size();
    while (begin < end && isBlank(name.at(begin)))
        ++begin;
    while (end > begin && isBlank(name.at(end - 1)))
        --end;
    return name.sliced(begin, end - begin);
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
