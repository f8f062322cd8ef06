#include "AppDelegate.h"
#include "ZelConfig.h"

int main(int argc, char *argv[])
{
    return AppDelegate::run(
        argc, argv,
        {QString::fromUtf8(ZelConfig::scoreServiceURL), QString::fromUtf8(ZelConfig::websiteURL),
         QString::fromUtf8(ZelConfig::appcastURL), QString::fromUtf8(ZelConfig::version)});
}
