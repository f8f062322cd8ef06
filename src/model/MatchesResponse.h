#pragma once

#include "Result.h"
#include "ZelMatch.h"

#include <QByteArray>
#include <QList>

// The envelope {"matches": [...]} of the match list endpoints.
struct MatchesResponse {
    QList<ZelMatch> matches;

    // One bad match fails the whole list: no element is skipped.
    static Result<MatchesResponse> fromJson(const QByteArray &json);
    static Result<MatchesResponse> fromJson(const simdjson::dom::element &value,
                                            const KeyPath &path);
};
