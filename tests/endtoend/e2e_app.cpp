#include "AppDelegate.h"
#include "ZelConfig.h"

using namespace Qt::Literals::StringLiterals;

// The application itself, built against a league simulator (and its analytics ingest) on a
// fixed loopback port.
int main(int argc, char *argv[])
{
    const QString origin = QStringLiteral(ZEL_E2E_ORIGIN);
    return AppDelegate::run(
        argc, argv,
        {origin, origin, origin + u"/zel/appcast.xml"_s, QString::fromUtf8(ZelConfig::version),
         AppDelegate::Analytics{origin + u"/"_s, QString::fromUtf8(ZelConfig::analyticsAppID),
                                QString(), QString::fromUtf8(ZelConfig::buildNumber)}});
}
