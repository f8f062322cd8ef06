#include "PopoverWindow.h"

#include "PlasmaPanels.h"
#include "PopoverController.h"
#include "PopoverScene.h"
#include "XDisplayProbe.h"

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
    setTitle(tr("Scores"));
    setMinimumSize(size);
    setMaximumSize(size);
    resize(size);
    setResizeMode(SizeRootObjectToView);
    PopoverScene::load(*this, controller);
    if (QQuickItem *root = rootObject())
        connect(root, SIGNAL(closeRequested()), this, SLOT(hide()));
    // Received by the shield: the base class hides the window once the shield is gone.
    connect(this, &QWindow::visibleChanged, &m_shield, [this](bool visible) {
        if (visible)
            return;
        m_shield.hide();
        setMouseGrabEnabled(false);
        setKeyboardGrabEnabled(false);
    });
    connect(&m_shield, &ClickAwayShield::clicked, this, &PopoverWindow::closeAway);
    // A click on another window, on the desktop or on a shell's own bar or menu takes the focus.
    // While the popover holds the grabs, they see every click and key: weston hands the X focus
    // back to its own window moments after the popover takes it, and that is no click away. The
    // keys still come to the popover, so its items keep their focus.
    connect(this, &QWindow::activeChanged, this, [this] {
        if (isActive())
            m_activeSinceShow = true;
        else if (isVisible() && m_activeSinceShow && m_grabs)
            contentItem()->setFocus(true);
        else if (isVisible() && m_activeSinceShow)
            closeAway();
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
    // A second activation this soon after the showing is the same click told twice: GNOME's
    // AppIndicator extension, before its first activation has returned, sends one on the press
    // and one on the release of a double click.
    if (isVisible()) {
        if (!m_sinceToggledOpen.isValid() || m_sinceToggledOpen.elapsed() >= sameClickMs)
            hide();
        return;
    }
    if (m_sinceOutsideClick.isValid() && m_sinceOutsideClick.elapsed() < sameClickMs)
        return;
    showBelow(anchor);
    m_sinceToggledOpen.start();
}

void PopoverWindow::closeAway()
{
    m_sinceOutsideClick.start();
    hide();
}

void PopoverWindow::showBelow(const QRect &anchor)
{
    m_controller.opening();
    QScreen *screen = anchor.isNull() ? nullptr : QGuiApplication::screenAt(anchor.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    // Never the pointer: Xwayland does not see it over a Wayland shell's bar.
    const QRect place =
        anchor.isNull() ? trayCorner(screen->geometry(), screen->availableGeometry()) : anchor;
    m_anchor =
        place.width() > 1 || place.height() > 1
            ? place
            : place.adjusted(-pointItemMargin, -pointItemMargin, pointItemMargin, pointItemMargin);
    // Not a Qt::Popup: Qt leaves popups out of the application's accessibility tree. Where a
    // window manager runs, a managed window gets the keyboard and loses it to a click on another
    // window or on a shell's own bar or menu. Without one, or under weston's, which places every
    // window itself, it bypasses the manager to be placed where asked. On X11 the grabs catch a
    // click on the desktop too, and under weston, which hands the keyboard to a grab. Under
    // another compositor's Xwayland they would only blind it to the compositor's own surfaces,
    // and under GNOME Shell and KWin on X11 they would take a right click on the item from the
    // shell, which draws the item's menu itself: there a shield under the popover takes a click
    // on the desktop instead.
    const QString manager = XDisplayProbe::windowManagerName();
    const bool weston = manager == QLatin1StringView("Weston WM");
    const bool shellDrawsMenus =
        manager == QLatin1StringView("GNOME Shell") || manager == QLatin1StringView("KWin");
    m_grabs = weston || !(XDisplayProbe::isXwayland() || shellDrawsMenus);
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    if (manager.isEmpty() || weston)
        flags |= Qt::BypassWindowManagerHint;
    setFlags(flags);
    setScreen(screen);
    // A panel the X display does not show, such as Plasma's under Wayland, its shell describes.
    QRect panel = XDisplayProbe::dockAt(place.center());
    if (panel.isNull())
        panel = PlasmaPanels::panelAt(place.center());
    const QRect available =
        panel.isNull() ? screen->availableGeometry()
                       : clearOfPanel(screen->availableGeometry(), panel, screen->geometry());
    setPosition(placement(place, size, available));
    m_sinceShowRequest.start();
    m_sinceToggledOpen.invalidate();
    m_activeSinceShow = false;
    if (!m_grabs)
        m_shield.cover(screen, flags.testFlag(Qt::BypassWindowManagerHint));
    show();
    raise();
    requestActivate();
}

void PopoverWindow::exposeEvent(QExposeEvent *event)
{
    QQuickView::exposeEvent(event);
    // Only a window on screen can take the grabs.
    if (m_grabs && isExposed()) {
        setKeyboardGrabEnabled(true);
        setMouseGrabEnabled(true);
    }
}

void PopoverWindow::mousePressEvent(QMouseEvent *event)
{
    if (!QRect(0, 0, width(), height()).contains(event->position().toPoint())) {
        event->accept();
        closeAway();
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
    if (anchor.bottom() < available.top())
        y = available.top();
    else if (anchor.top() > available.bottom())
        y = available.bottom() + 1 - windowSize.height();
    else if (y + windowSize.height() > available.bottom() + 1 &&
             anchor.top() - gap - windowSize.height() >= available.top())
        y = anchor.top() - gap - windowSize.height();
    // The left and top edges win on a screen smaller than the window.
    x = qMax(available.left(), qMin(x, available.right() + 1 - windowSize.width()));
    y = qMax(available.top(), qMin(y, available.bottom() + 1 - windowSize.height()));
    return {x, y};
}

QRect PopoverWindow::clearOfPanel(QRect available, const QRect &panel, const QRect &screen)
{
    const QPoint offCentre = panel.center() - screen.center();
    if (panel.width() >= panel.height() && offCentre.y() < 0)
        available.setTop(qMax(available.top(), panel.bottom() + 1));
    else if (panel.width() >= panel.height())
        available.setBottom(qMin(available.bottom(), panel.top() - 1));
    else if (offCentre.x() < 0)
        available.setLeft(qMax(available.left(), panel.right() + 1));
    else
        available.setRight(qMin(available.right(), panel.left() - 1));
    return available;
}

QRect PopoverWindow::trayCorner(const QRect &screen, const QRect &available)
{
    const bool bottomPanel =
        available.top() == screen.top() && available.bottom() < screen.bottom();
    return {available.right(), bottomPanel ? available.bottom() + 1 : available.top() - 1, 1, 1};
}
