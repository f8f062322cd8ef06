#pragma once

#include "MenuBarController.h"
#include "UpdateChecker.h"

#include <memory>
#include <optional>
#include <QProcessEnvironment>

class TelemetryManagerConfiguration;

// The application's delegate: starts the update checks at once and builds the menu-bar
// controller when the event loop is running.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    struct Analytics {
        QString baseURL;
        QString appID;
        QString salt;
        QString buildNumber;
    };

    struct Setup {
        QString serviceURL;
        QString websiteURL;
        QString appcastURL;
        QString version;
        std::optional<Analytics> analytics; // nothing: the client is never started
    };

    explicit AppDelegate(Setup setup, QObject *parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    MenuBarController *controller() const { return m_controller.get(); }

    // The process entry: one instance per session, then the event loop until quit.
    static int run(int argc, char *argv[], const Setup &setup);

    // The analytics client's configuration: the app's own folders, its version, and off when
    // the environment says DO_NOT_TRACK=1.
    static std::shared_ptr<TelemetryManagerConfiguration>
    analyticsConfiguration(const Analytics &analytics, const QString &version,
                           const QProcessEnvironment &environment);

private:
    Setup m_setup;
    UpdateChecker m_updater;
    std::unique_ptr<MenuBarController> m_controller;
};
