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

QPixmap circle()
{
    QPixmap art(22, 22);
    art.fill(Qt::transparent);
    QPainter painter(&art);
    painter.setBrush(Qt::darkGreen);
    painter.drawEllipse(art.rect().adjusted(2, 2, -2, -2));
    return art;
}

QPixmap drawn(const QString &svg)
{
    QPixmap art(22, 22);
    art.fill(Qt::transparent);
    QPainter painter(&art);
    QSvgRenderer(svg).render(&painter);
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
    QSystemTrayIcon tray{QIcon(features ? drawn(QStringLiteral(ZEL_FLOOR_ICON)) : circle())};
    tray.setContextMenu(&menu);
    QObject::connect(&tray, &QSystemTrayIcon::activated, &window,
                     [&window] { window.setVisible(!window.isVisible()); });
    tray.show();
    return QApplication::exec();
}
