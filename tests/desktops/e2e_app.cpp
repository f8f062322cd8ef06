#include "AppDelegate.h"
#include "TodayViewModel.h"
#include "ZelConfig.h"

#include <cstdio>
#include <QGuiApplication>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// The application itself, against the league simulator (and its analytics ingest) at the origin
// the test gives. With --expected-title it prints the title a fresh state object computes from
// the simulator right now, and quits.
int main(int argc, char *argv[])
{
    const QString origin = qEnvironmentVariable("ZEL_E2E_ORIGIN");
    if (!origin.startsWith(u"http://127.0.0.1:"_s))
        qFatal("zel-menubar-e2e: set ZEL_E2E_ORIGIN to the simulator's, http://127.0.0.1:PORT");
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
