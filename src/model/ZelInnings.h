#pragma once

#include "KeyPath.h"
#include "Result.h"
#include "ZelBattingEntry.h"
#include "ZelBowlingEntry.h"

#include <QList>

namespace simdjson::dom {
class element;
}

struct ZelInnings {
    qint64 inningsNo = 0;
    QString battingTeamName;
    QList<ZelBattingEntry> batting;
    QList<ZelBowlingEntry> bowling;

    // Strict: every key is required, and each line must at least be an object.
    static Result<ZelInnings> fromJson(const simdjson::dom::element &value, const KeyPath &path);

    qint64 id() const { return inningsNo; }

    friend bool operator==(const ZelInnings &, const ZelInnings &) = default;
};
