#include "MatchesResponse.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray json =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto response = MatchesResponse::fromJson(json);
    if (!response.isOk())
        return 0;
    for (const ZelMatch &match : response.value().matches) {
        (void)match.homeTeamLogoURL();
        (void)match.awayTeamLogoURL();
        (void)match.homeTeamCode();
        (void)match.awayTeamCode();
        (void)match.formattedTossDetails();
    }
    return 0;
}
