#pragma once

#include "Result.h"

// The error's description for a test message, or nothing when the result holds a value.
template <typename T> QByteArray failureText(const Result<T> &result)
{
    return result.isOk() ? QByteArray() : result.error().description.toUtf8();
}
