// The floors the app's memory is measured against. Bare: the least a Qt Quick tray app can be,
// a tray icon with a menu and one 380 x 500 Quick window that the icon's click shows and hides,
// drawn by Qt Quick's software renderer as the app's popover is. With --features, the least a
// score app of this kind can be: it also polls the score list every 30 s over HTTP, draws its
// icon from SVG, and shows a bold title with the bat emoji.
#include <QApplication>
#include <QMenu>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPainter>
#include <QQmlContext>
#include <QQuickView>
#include <QSvgRenderer>
#include <QSystemTrayIcon>
#include <QTimer>

namespace {

// A plain circle, or with the features the app's own SVG.
QPixmap icon(bool features)
{
    QPixmap art(22, 22);
    art.fill(Qt::transparent);
    QPainter painter(&art);
    if (features) {
        QSvgRenderer(QStringLiteral(ZEL_FLOOR_ICON)).render(&painter);
    } else {
        painter.setBrush(Qt::darkGreen);
        painter.drawEllipse(art.rect().adjusted(2, 2, -2, -2));
    }
    return art;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    app.setQuitOnLastWindowClosed(false);
    const bool features = app.arguments().contains(QStringLiteral("--features"));

    QQuickView window;
    window.setFlags(Qt::Popup);
    window.resize(380, 500);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.rootContext()->setContextProperty(QStringLiteral("features"), features);
    window.setSource(QUrl(QStringLiteral("qrc:/floor/Floor.qml")));

    QNetworkAccessManager network;
    QTimer poll;
    if (features) {
        const QUrl list(QStringLiteral(ZEL_FLOOR_SERVICE_URL "/api/matches/today"));
        const auto fetch = [&network, list] {
            QNetworkReply *reply = network.get(QNetworkRequest(list));
            QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
        };
        QObject::connect(&poll, &QTimer::timeout, &network, fetch);
        poll.start(30000);
        fetch();
    }

    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &app, &QCoreApplication::quit);
    QSystemTrayIcon tray{QIcon(icon(features))};
    tray.setContextMenu(&menu);
    QObject::connect(&tray, &QSystemTrayIcon::activated, &window,
                     [&window] { window.setVisible(!window.isVisible()); });
    tray.show();
    return QApplication::exec();
}
