#pragma once

#include <optional>
#include <QString>

// Why a batch was not accepted.
struct TelemetryError {
    enum class Kind {
        InvalidStatusCode,
        Unauthorised,
        Forbidden,
        PayloadTooLarge,
        InvalidEndpointUrl
    };

    Kind kind;
    int statusCode = 0; // for InvalidStatusCode

    QString description() const;

    // Nothing for 200 to 299; a missing status (no HTTP answer) counts as 0.
    static std::optional<TelemetryError> statusCodeError(std::optional<int> statusCode);
};
