#include "ZelBattingEntry.h"

#include "EntryFields.h"

#include <QJsonObject>
#include <array>
#include <cstdio>

ZelBattingEntry ZelBattingEntry::fromJson(const QJsonObject &object)
{
    ZelBattingEntry entry;
    entry.name = EntryFields::trimmedName(object);
    entry.runs = EntryFields::count(object, QLatin1StringView("runs"));
    entry.balls = EntryFields::count(object, QLatin1StringView("balls"));
    entry.fours = EntryFields::count(object, QLatin1StringView("fours"));
    entry.sixes = EntryFields::count(object, QLatin1StringView("sixes"));
    entry.strikeRate = normalisedStrikeRate(
        EntryFields::text(object, QLatin1StringView("strikeRate"), QString()));
    entry.isNotOut = object.value(QLatin1StringView("isNotOut")) == QJsonValue(true)
                         ? QStringLiteral("1")
                         : QStringLiteral("0");
    return entry;
}

QString ZelBattingEntry::normalisedStrikeRate(const QString &text)
{
    if (text.isEmpty())
        return QStringLiteral("-");
    // The whole text must be a number: no surrounding whitespace, no trailing garbage.
    bool isNumber = !text.front().isSpace() && !text.back().isSpace();
    const double value = isNumber ? text.toDouble(&isNumber) : 0.0;
    if (!isNumber)
        return text;

    // C formatting, so that rounding is exactly printf's.
    std::array<char, 512> buffer{};
    int length = std::snprintf(buffer.data(), buffer.size(), "%.1f", value);
    if (length >= 5)
        length = std::snprintf(buffer.data(), buffer.size(), "%.0f", value);
    return QString::fromLatin1(buffer.data(), qMin<qsizetype>(length, buffer.size() - 1));
}
