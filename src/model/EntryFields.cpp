#include "EntryFields.h"

#include "JsonDecoding.h"

namespace EntryFields {

QString trimmedName(const QJsonObject &object)
{
    const QString name = text(object, QLatin1StringView("name"), QString());
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = name.size();
    while (begin < end && isBlank(name.at(begin)))
        ++begin;
    while (end > begin && isBlank(name.at(end - 1)))
        --end;
    return name.sliced(begin, end - begin);
}

QString text(const QJsonObject &object, QLatin1StringView key, const QString &fallback)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? value.toString() : fallback;
}

QString count(const QJsonObject &object, QLatin1StringView key)
{
    return QString::number(JsonDecoding::exactInteger(object.value(key)).value_or(0));
}

} // namespace EntryFields
