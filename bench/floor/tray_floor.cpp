// The floor the app's memory is measured against: the least a Qt Quick tray app can be. A tray
// icon with a menu, and one 380 x 500 Quick window that the icon's click shows and hides, drawn
// by Qt Quick's software renderer as the app's popover is.
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QQuickView>
#include <QSystemTrayIcon>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    app.setQuitOnLastWindowClosed(false);

    QQuickView window;
    window.setFlags(Qt::Popup);
    window.resize(380, 500);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.setSource(QUrl(QStringLiteral("qrc:/floor/Floor.qml")));

    QPixmap art(22, 22);
    art.fill(Qt::transparent);
    QPainter painter(&art);
    painter.setBrush(Qt::darkGreen);
    painter.drawEllipse(art.rect().adjusted(2, 2, -2, -2));
    painter.end();

    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &app, &QCoreApplication::quit);
    QSystemTrayIcon tray{QIcon(art)};
    tray.setContextMenu(&menu);
    QObject::connect(&tray, &QSystemTrayIcon::activated, &window,
                     [&window] { window.setVisible(!window.isVisible()); });
    tray.show();
    return QApplication::exec();
}
