// Opens and scrolls the real popover off screen over 200 fixtures and prints timings and the
// memory the views add: medians, not assertions, because this machine's timings are noisy.
#include "HttpListener.h"
#include "HttpReply.h"
#include "ImageCache.h"
#include "PopoverController.h"
#include "PopoverScene.h"
#include "PopoverStyle.h"
#include "TodayViewModel.h"

#include <algorithm>
#include <cstdio>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(ZelMenuBarPlugin)

namespace {

// A line of /proc/self/smaps_rollup, in KiB: "Rss" counts shared library code that other
// Qt programs share too; "Private_Dirty" is what this process alone holds.
qint64 memoryKiB(const QByteArray &field)
{
    QFile rollup(QStringLiteral("/proc/self/smaps_rollup"));
    if (!rollup.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : rollup.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

QByteArray fixtures(int count)
{
    QJsonArray list;
    const QDateTime first = QDateTime::currentDateTimeUtc().addDays(2);
    for (int i = 0; i < count; ++i) {
        list.append(QJsonObject{
            {"matchID", 1000 + i},
            {"matchOrder", QStringLiteral("Match %1").arg(i + 1)},
            {"status", "upcoming"},
            {"startTime", first.addSecs(qint64(i) * 4 * 3600).toString(Qt::ISODate)},
            {"venue", QJsonObject{{"ground", "Harbour Oval"}, {"city", "Northport"}}},
            {"homeTeam",
             QJsonObject{
                 {"id", "1"}, {"name", "Northport Mariners"}, {"logoURL", ""}, {"code", "NTH"}}},
            {"awayTeam",
             QJsonObject{
                 {"id", "2"}, {"name", "Southshore Suns"}, {"logoURL", ""}, {"code", "STH"}}},
        });
    }
    return QJsonDocument(QJsonObject{{"matches", list}}).toJson(QJsonDocument::Compact);
}

// Runs the event loop until the window shows a new frame; false after two seconds without one.
bool nextFrame(QQuickWindow &window)
{
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    QTimer::singleShot(2000, &loop, [&loop] { loop.exit(1); });
    return loop.exec() == 0;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir cacheHome;
    qputenv("XDG_CACHE_HOME", cacheHome.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    PopoverStyle::apply();
    QGuiApplication app(argc, argv);

    const QByteArray upcoming = fixtures(200);
    HttpListener server([&upcoming](const HttpRequest &request, QTcpSocket *socket) {
        HttpReply::json(request.url.path() == QLatin1StringView("/api/matches/upcoming")
                            ? upcoming
                            : QByteArray(R"({"matches": []})"))
            .writeTo(socket);
    });
    QString error;
    if (!server.listen(0, &error)) {
        std::fprintf(stderr, "popover_bench: %s\n", qPrintable(error));
        return 1;
    }
    const QString origin = QStringLiteral("http://127.0.0.1:%1").arg(server.port());

    TodayViewModel::Setup setup;
    setup.serviceURL = origin;
    TodayViewModel vm(setup);
    if (!QTest::qWaitFor([&] { return vm.fixtureMatches().size() == 200; }, 10000)) {
        std::fprintf(stderr, "popover_bench: no fixtures\n");
        return 1;
    }
    const qint64 stateResident = memoryKiB("Rss");
    const qint64 statePrivate = memoryKiB("Private_Dirty");

    PopoverController popover(vm, origin);
    popover.setActiveTab(Popover::Tab::Fixtures);
    QQuickView view;
    PopoverScene::load(view, popover);

    QElapsedTimer clock;
    QList<double> openings;
    for (int i = 0; i < 25; ++i) {
        clock.start();
        view.show();
        if (!nextFrame(view))
            break;
        openings.append(clock.nsecsElapsed() / 1e6);
        view.hide();
        QTest::qWait(20);
    }

    view.show();
    QTest::qWait(200);
    QQuickItem *list = nullptr;
    for (QQuickItem *item : view.rootObject()->findChildren<QQuickItem *>()) {
        if (item->objectName() == QLatin1StringView("fixturesTab"))
            list = qvariant_cast<QQuickItem *>(item->property("list"));
    }
    QList<double> scrollFrames;
    if (list) {
        const qreal end = list->property("contentHeight").toReal() - list->height();
        for (qreal y = 40; y < end; y += 40) {
            clock.start();
            list->setProperty("contentY", y);
            if (!nextFrame(view))
                break;
            scrollFrames.append(clock.nsecsElapsed() / 1e6);
        }
    }
    const qint64 viewsResident = memoryKiB("Rss") - stateResident;
    const qint64 viewsPrivate = memoryKiB("Private_Dirty") - statePrivate;

    std::printf(
        "open to first frame, 200 fixtures: median %.2f ms, max %.2f ms over %lld openings\n",
        median(openings),
        openings.isEmpty() ? 0 : *std::max_element(openings.begin(), openings.end()),
        qint64(openings.size()));
    std::printf(
        "scroll step to frame: median %.2f ms, max %.2f ms over %lld frames\n",
        median(scrollFrames),
        scrollFrames.isEmpty() ? 0 : *std::max_element(scrollFrames.begin(), scrollFrames.end()),
        qint64(scrollFrames.size()));
    std::printf("the views add: %lld KiB resident, %lld KiB private dirty\n", viewsResident,
                viewsPrivate);
    return 0;
}
