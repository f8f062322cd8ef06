#include "ZelBattingEntry.h"

#include "EntryFields.h"

#include <array>
#include <cstdio>

ZelBattingEntry ZelBattingEntry::fromJson(const simdjson::dom::object &object)
{
    ZelBattingEntry entry;
    entry.name = EntryFields::trimmedName(object);
    entry.runs = EntryFields::count(object, "runs");
    entry.balls = EntryFields::count(object, "balls");
    entry.fours = EntryFields::count(object, "fours");
    entry.sixes = EntryFields::count(object, "sixes");
    entry.strikeRate = normalisedStrikeRate(EntryFields::text(object, "strikeRate", QString()));
    bool notOut = false;
    const auto flag = JsonDecoding::member(object, "isNotOut");
    entry.isNotOut =
        flag && !flag->get_bool().get(notOut) && notOut ? QStringLiteral("1") : QStringLiteral("0");
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
