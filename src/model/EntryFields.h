#pragma once

#include "JsonDecoding.h"

#include <QString>

// Forgiving reads shared by the scorecard's batting and bowling lines.
namespace EntryFields {

// The name with leading and trailing spaces and tabs removed; line breaks stay.
QString trimmedName(const JsonDecoding::Object &object);

QString text(const JsonDecoding::Object &object, std::string_view key, const QString &fallback);

// An exact integer as decimal text, "0" otherwise.
QString count(const JsonDecoding::Object &object, std::string_view key);

} // namespace EntryFields
