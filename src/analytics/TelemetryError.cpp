#include "TelemetryError.h"

QString TelemetryError::description() const
{
    switch (kind) {
    case Kind::Unauthorised:
        return QStringLiteral("Unauthorized (401)");
    case Kind::Forbidden:
        return QStringLiteral("Forbidden (403)");
    case Kind::PayloadTooLarge:
        return QStringLiteral("Payload is too large (413)");
    case Kind::InvalidEndpointUrl:
        return QStringLiteral("Invalid endpoint URL");
    case Kind::InvalidStatusCode:
        break;
    }
    return QStringLiteral("Invalid status code %1").arg(statusCode);
}

std::optional<TelemetryError> TelemetryError::statusCodeError(std::optional<int> statusCode)
{
    const int code = statusCode.value_or(0);
    if (code >= 200 && code <= 299)
        return std::nullopt;
    switch (code) {
    case 401:
        return TelemetryError{Kind::Unauthorised};
    case 403:
        return TelemetryError{Kind::Forbidden};
    case 413:
        return TelemetryError{Kind::PayloadTooLarge};
    default:
        return TelemetryError{Kind::InvalidStatusCode, code};
    }
}
