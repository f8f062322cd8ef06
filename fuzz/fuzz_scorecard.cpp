#include "ZelScorecard.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    (void)ZelScorecard::fromJson(bytes);
    // The strike-rate normalisation also sees arbitrary text directly.
    (void)ZelBattingEntry::normalisedStrikeRate(QString::fromUtf8(bytes));
    return 0;
}
