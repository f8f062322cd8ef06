#include "AppDelegate.h"

#include "PopoverStyle.h"
#include "SignalQuitter.h"
#include "SingleInstance.h"
#include "StatusIconArt.h"
#include "TelemetryDeck.h"
#include "TelemetryManagerConfiguration.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTimer>
#include <QTranslator>

AppDelegate::AppDelegate(Setup setup, QObject *parent)
    : QObject(parent)
    , m_setup(std::move(setup))
    , m_updater(m_setup.appcastURL, m_setup.version)
{
    m_updater.startSchedule();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    // There is no dock to keep out of: the app opens no window of its own and its popover
    // bypasses the window manager, so no task list shows it.
    if (m_setup.analytics) {
        TelemetryDeck::initialize(analyticsConfiguration(*m_setup.analytics, m_setup.version,
                                                         QProcessEnvironment::systemEnvironment()));
        TelemetryDeck::signal(QStringLiteral("app.launched"));
    }
    m_controller = std::make_unique<MenuBarController>(
        MenuBarController::Setup{m_setup.serviceURL, m_setup.websiteURL, m_setup.version},
        m_updater);
}

std::shared_ptr<TelemetryManagerConfiguration>
AppDelegate::analyticsConfiguration(const Analytics &analytics, const QString &version,
                                    const QProcessEnvironment &environment)
{
    auto configuration = std::make_shared<TelemetryManagerConfiguration>(
        analytics.appID, analytics.salt, QUrl(analytics.baseURL));
    const QString folder = QStringLiteral("/ZelMenuBar");
    configuration->cacheDirectory.set(
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + folder);
    configuration->storeDirectory.set(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + folder);
    configuration->appVersion.set(version);
    configuration->buildNumber.set(analytics.buildNumber);
    // The convention across tools for "do not report on me": nothing leaves the machine.
    configuration->analyticsDisabled.set(environment.value(QStringLiteral("DO_NOT_TRACK")) ==
                                         QLatin1String("1"));
    return configuration;
}

int AppDelegate::run(int argc, char *argv[], const Setup &setup)
{
    // Wayland lets no client place its own popup; XWayland does, so prefer it when present.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    PopoverStyle::apply();

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zel-menubar"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zel Menu Bar"));
    QApplication::setApplicationVersion(setup.version);
    QApplication::setDesktopFileName(QStringLiteral("example.zel.MenuBar"));
    // Closing the update dialog must not end a program that has no main window.
    QApplication::setQuitOnLastWindowClosed(false);
    // Drawn once at the sizes window managers ask for: a QIcon of the SVG file would load the
    // SVG icon engine and draw again at every size asked.
    QIcon windowIcon;
    for (const int side : {16, 32, 64})
        windowIcon.addPixmap(QPixmap::fromImage(StatusIconArt::bat(side)));
    QApplication::setWindowIcon(windowIcon);
    QTranslator translator;
    if (translator.load(QLocale(), QStringLiteral("zel-menubar"), QStringLiteral("_"),
                        QStringLiteral(":/i18n")))
        QApplication::installTranslator(&translator);

    SingleInstance instance(SingleInstance::defaultSocketPath());
    if (!instance.claim())
        return 0;
    SignalQuitter quitter;

    AppDelegate delegate(setup);
    QObject::connect(&instance, &SingleInstance::showRequested, &delegate, [&delegate] {
        if (MenuBarController *controller = delegate.controller())
            controller->showPopover();
    });
    QTimer::singleShot(0, &delegate, &AppDelegate::applicationDidFinishLaunching);
    return app.exec();
}
