#include "AppDelegate.h"
#include "ZelConfig.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

int main(int argc, char *argv[])
{
#ifdef __GLIBC__
    // glibc raises its mmap threshold to the largest block ever freed, so after one big body
    // (a garbage answer, a long list) every later large buffer comes from a heap that is never
    // given back. Fixed thresholds keep large buffers mapped and returned when freed.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 256 * 1024);
    // A heap per thread (glibc's default) keeps what each short-lived worker left behind, in
    // many half-used heaps; an app that is idle nearly all day needs no spare heaps.
    mallopt(M_ARENA_MAX, 1);
#endif
    std::optional<AppDelegate::Analytics> analytics;
    if (ZelConfig::analytics)
        analytics = AppDelegate::Analytics{QString::fromUtf8(ZelConfig::analyticsBaseURL),
                                           QString::fromUtf8(ZelConfig::analyticsAppID),
                                           QString::fromUtf8(ZelConfig::analyticsSalt),
                                           QString::fromUtf8(ZelConfig::buildNumber)};
    return AppDelegate::run(argc, argv,
                            {QString::fromUtf8(ZelConfig::scoreServiceURL),
                             QString::fromUtf8(ZelConfig::websiteURL),
                             QString::fromUtf8(ZelConfig::appcastURL),
                             QString::fromUtf8(ZelConfig::version), analytics});
}
