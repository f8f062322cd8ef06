#pragma once

#include <QString>

namespace simdjson::dom {
class object;
}

// One batter's line, every figure already formatted for display.
struct ZelBattingEntry {
    QString name;
    QString runs = QStringLiteral("0");
    QString balls = QStringLiteral("0");
    QString fours = QStringLiteral("0");
    QString sixes = QStringLiteral("0");
    QString strikeRate = QStringLiteral("-");
    QString isNotOut = QStringLiteral("0");

    // Never fails: a missing or mistyped key gives that field's placeholder.
    static ZelBattingEntry fromJson(const simdjson::dom::object &object);

    // "133.33" becomes "133", "87.5" stays "87.5", "" becomes "-", other text is kept.
    static QString normalisedStrikeRate(const QString &text);

    const QString &id() const { return name; }

    friend bool operator==(const ZelBattingEntry &, const ZelBattingEntry &) = default;
};
