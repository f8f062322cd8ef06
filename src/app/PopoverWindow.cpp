#include "PopoverWindow.h"

#include "PopoverController.h"
#include "PopoverScene.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickItem>
#include <QScreen>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(ZelMenuBarPlugin)

namespace {
// The click outside that closes the popover may be the click on the status item itself; it
// must close the popover, not close and reopen it.
constexpr qint64 sameClickMs = 300;
constexpr int gap = 4;
// A status item known only by a point (a panel's click) is taken as an icon's size around it.
constexpr int pointItemMargin = 12;
} // namespace

PopoverWindow::PopoverWindow(PopoverController &controller)
    : m_controller(controller)
{
    // Not a Qt::Popup: Qt leaves popups out of the application's accessibility tree, so a
    // screen reader would find no window. A tool window that bypasses the window manager is
    // placed where it is asked, as a popup is; the grabs and the outside click are done here.
    setFlags(Qt::Tool | Qt::BypassWindowManagerHint | Qt::FramelessWindowHint |
             Qt::WindowStaysOnTopHint);
    setTitle(tr("Scores"));
    setMinimumSize(size);
    setMaximumSize(size);
    resize(size);
    setResizeMode(SizeRootObjectToView);
    PopoverScene::load(*this, controller);
    if (QQuickItem *root = rootObject())
        connect(root, SIGNAL(closeRequested()), this, SLOT(hide()));
    connect(this, &QWindow::visibleChanged, this, [this](bool visible) {
        if (visible)
            return;
        setMouseGrabEnabled(false);
        setKeyboardGrabEnabled(false);
    });
    connect(this, &QQuickWindow::frameSwapped, this, [this] {
        if (m_sinceShowRequest.isValid()) {
            emit shownAfter(m_sinceShowRequest.nsecsElapsed());
            m_sinceShowRequest.invalidate();
        }
    });
}

void PopoverWindow::toggle(const QRect &anchor)
{
    if (isVisible()) {
        hide();
        return;
    }
    if (m_sinceOutsideClick.isValid() && m_sinceOutsideClick.elapsed() < sameClickMs)
        return;
    showBelow(anchor);
}

void PopoverWindow::showBelow(const QRect &anchor)
{
    m_controller.opening();
    const QRect place = anchor.isNull() ? QRect(QCursor::pos(), QSize(1, 1)) : anchor;
    m_anchor =
        place.width() > 1 || place.height() > 1
            ? place
            : place.adjusted(-pointItemMargin, -pointItemMargin, pointItemMargin, pointItemMargin);
    QScreen *screen = QGuiApplication::screenAt(place.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        setScreen(screen);
        setPosition(placement(place, size, screen->availableGeometry()));
    }
    m_sinceShowRequest.start();
    show();
    raise();
    requestActivate();
}

void PopoverWindow::exposeEvent(QExposeEvent *event)
{
    QQuickView::exposeEvent(event);
    // Only a window on screen can take the grabs.
    if (isExposed()) {
        setKeyboardGrabEnabled(true);
        setMouseGrabEnabled(true);
    }
}

void PopoverWindow::mousePressEvent(QMouseEvent *event)
{
    if (!QRect(0, 0, width(), height()).contains(event->position().toPoint())) {
        event->accept();
        m_sinceOutsideClick.start();
        hide();
        const QPoint at = event->globalPosition().toPoint();
        if (event->button() == Qt::RightButton && m_anchor.contains(at))
            emit statusItemRightClicked(at);
        return;
    }
    QQuickView::mousePressEvent(event);
}

QPoint PopoverWindow::placement(const QRect &anchor, QSize windowSize, const QRect &available)
{
    int x = anchor.center().x() - windowSize.width() / 2;
    int y = anchor.bottom() + 1 + gap;
    if (y + windowSize.height() > available.bottom() + 1 &&
        anchor.top() - gap - windowSize.height() >= available.top())
        y = anchor.top() - gap - windowSize.height();
    // The left and top edges win on a screen smaller than the window.
    x = qMax(available.left(), qMin(x, available.right() + 1 - windowSize.width()));
    y = qMax(available.top(), qMin(y, available.bottom() + 1 - windowSize.height()));
    return {x, y};
}
