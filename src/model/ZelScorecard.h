#pragma once

#include "Result.h"
#include "ZelInnings.h"

#include <QByteArray>

// A match's full batting and bowling record, innings in the order sent.
struct ZelScorecard {
    QList<ZelInnings> innings;

    // One broken innings fails the whole scorecard.
    static Result<ZelScorecard> fromJson(const QByteArray &json);
    static Result<ZelScorecard> fromJson(const simdjson::dom::element &value, const KeyPath &path);

    friend bool operator==(const ZelScorecard &, const ZelScorecard &) = default;
};
