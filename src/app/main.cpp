#include "AppDelegate.h"
#include "ZelConfig.h"

int main(int argc, char *argv[])
{
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
