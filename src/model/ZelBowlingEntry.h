#pragma once

#include <QString>

namespace simdjson::dom {
class object;
}

// One bowler's line, every figure already formatted for display.
struct ZelBowlingEntry {
    QString name;
    QString overs = QStringLiteral("0");
    QString maidens = QStringLiteral("0");
    QString runs = QStringLiteral("0");
    QString wickets = QStringLiteral("0");
    QString economy = QStringLiteral("-");

    // Never fails: a missing or mistyped key gives that field's placeholder.
    static ZelBowlingEntry fromJson(const simdjson::dom::object &object);

    const QString &id() const { return name; }

    friend bool operator==(const ZelBowlingEntry &, const ZelBowlingEntry &) = default;
};
