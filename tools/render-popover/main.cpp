#include "ImageCache.h"
#include "League.h"
#include "LeagueServer.h"
#include "PopoverController.h"
#include "PopoverScene.h"
#include "PopoverStyle.h"
#include "Preferences.h"
#include "TodayViewModel.h"

#include <cstdio>
#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QPalette>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(ZelMenuBarPlugin)

namespace {

QPalette darkPalette()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
    dark.setColor(QPalette::WindowText, QColor(0xec, 0xec, 0xee));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    dark.setColor(QPalette::Text, QColor(0xec, 0xec, 0xee));
    dark.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
    dark.setColor(QPalette::ButtonText, QColor(0xec, 0xec, 0xee));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0x7a, 0xd6));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Mid, QColor(0x55, 0x55, 0x5a));
    dark.setColor(QPalette::Light, QColor(0x48, 0x48, 0x4c));
    dark.setColor(QPalette::Dark, QColor(0x20, 0x20, 0x22));
    return dark;
}

[[noreturn]] void fail(const QString &message)
{
    std::fprintf(stderr, "render-popover: %s\n", qPrintable(message));
    std::exit(2);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir cacheHome; // logos fetched for the pictures stay out of the user's cache
    qputenv("XDG_CACHE_HOME", cacheHome.path().toUtf8());
    PopoverStyle::apply();
    QGuiApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Renders Zel Menu Bar's popover to PNG, one picture per tab and one of the settings "
        "page, from a league scenario played in-process or from a running score service.");
    parser.addHelpOption();
    parser.addOptions({
        {"scenario", "League simulator scenario to play in-process (default live-second-innings).",
         "name", "live-second-innings"},
        {"start", "The league's moment (ISO 8601 with offset); default now.", "moment"},
        {"url", "Use this running score service instead of an in-process league.", "origin"},
        {"dark", "Render with a dark palette."},
        {"out", "Folder for the PNG files (default the current one).", "folder", "."},
        {"prefix", "File name prefix (default popover).", "text", "popover"},
        {"favourite", "Follow the team with this code (its matches carry the mark).", "code"},
    });
    parser.process(app);
    if (parser.isSet("dark"))
        QGuiApplication::setPalette(darkPalette());

    QDateTime start = QDateTime::currentDateTimeUtc();
    if (parser.isSet("start")) {
        start = QDateTime::fromString(parser.value("start"), Qt::ISODate);
        if (!start.isValid())
            fail("--start takes an ISO 8601 moment");
    }
    const auto scenario = League::scenarioNamed(parser.value("scenario"));
    if (!scenario)
        fail("unknown scenario " + parser.value("scenario"));
    League league(*scenario, 1, start);
    IngestSink ingest({}, 200);
    LeagueServer server(
        league, [start] { return start; }, FaultInjector({}, 1), ingest);
    QString serviceURL = parser.value("url");
    if (serviceURL.isEmpty()) {
        QString error;
        if (!server.start(0, &error))
            fail(error);
        serviceURL = server.origin();
    }

    TodayViewModel::Setup setup;
    setup.serviceURL = serviceURL;
    if (!parser.isSet("url"))
        setup.clock = [start] { return start; };
    TodayViewModel vm(setup);
    QTemporaryDir settingsHome;
    Preferences preferences(settingsHome.filePath("settings.ini"));
    preferences.setAlerts(Preferences::Alert::Starts, true);
    preferences.setAlerts(Preferences::Alert::Results, true);
    PopoverController popover(vm, serviceURL, &preferences);

    QQuickView view;
    if (!PopoverScene::load(view, popover))
        fail("the popover's QML did not load");
    view.show();

    const QDir out(parser.value("out"));
    const auto settle = [&] {
        const bool settled = QTest::qWaitFor(
            [&] {
                return !vm.isLoading() && !vm.isLoadingFixtures() && !vm.isLoadingResults() &&
                       vm.loadingScorecards().isEmpty();
            },
            10000);
        if (!settled)
            fail("the score service did not answer");
        QTest::qWait(600); // logos and the expand animation
    };
    settle();
    if (parser.isSet("favourite")) {
        for (const TeamInfo &team : vm.knownTeams()) {
            if (team.code == parser.value("favourite"))
                preferences.setFavourite(team);
        }
        if (!preferences.favourite())
            fail("no team has the code " + parser.value("favourite"));
    }
    for (const auto &[tab, name] :
         {std::pair{Popover::Tab::Today, "today"}, std::pair{Popover::Tab::Results, "results"},
          std::pair{Popover::Tab::Fixtures, "fixtures"}}) {
        popover.setActiveTab(tab);
        settle();
        const QString file = out.filePath(parser.value("prefix") + "-" + name + ".png");
        if (!view.grabWindow().save(file))
            fail("cannot write " + file);
        std::printf("%s\n", qPrintable(file));
    }
    popover.setActiveTab(Popover::Tab::Today);
    popover.setSettingsOpen(true);
    QTest::qWait(600);
    const QString file = out.filePath(parser.value("prefix") + "-settings.png");
    if (!view.grabWindow().save(file))
        fail("cannot write " + file);
    std::printf("%s\n", qPrintable(file));
    return 0;
}
