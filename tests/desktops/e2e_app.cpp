#include "AppDelegate.h"
#include "TodayViewModel.h"
#include "ZelConfig.h"

#include <cstdio>
#include <QGuiApplication>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// The application itself, built against a league simulator (and its analytics ingest) on a
// fixed loopback port. With --expected-title it prints the title a fresh state object computes
// from the simulator right now, and quits.
int main(int argc, char *argv[])
{
    const QString origin = QStringLiteral(ZEL_E2E_ORIGIN);
    if (argc == 2 && QByteArrayView(argv[1]) == "--expected-title") {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QGuiApplication application(argc, argv);
        TodayViewModel vm({.serviceURL = origin});
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (vm.isLoading() || vm.isLoadingFixtures())
                return;
            poll.stop();
            std::puts(qPrintable(vm.statusBarTitle().text));
            QCoreApplication::quit();
        });
        poll.start(50);
        QTimer::singleShot(10000, &application, &QCoreApplication::quit);
        return QCoreApplication::exec();
    }
    return AppDelegate::run(
        argc, argv,
        {origin, origin, origin + u"/zel/appcast.xml"_s, QString::fromUtf8(ZelConfig::version),
         AppDelegate::Analytics{origin + u"/"_s, QString::fromUtf8(ZelConfig::analyticsAppID),
                                QString(), QString::fromUtf8(ZelConfig::buildNumber)}});
}
