#pragma once

#include "Result.h"
#include "ZelInnings.h"

#include <QByteArray>

// A match's full batting and bowling record, innings in the order sent.
struct ZelScorecard {
    QList<ZelInnings> innings;

    // One broken innings fails the whole scorecard.
    static Result<ZelScorecard> fromJson(const QJsonValue &value, const KeyPath &path = {});
    static Result<ZelScorecard> fromJson(const QByteArray &json);

    friend bool operator==(const ZelScorecard &, const ZelScorecard &) = default;
};
