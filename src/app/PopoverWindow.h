#pragma once

#include "ClickAwayShield.h"

#include <QElapsedTimer>
#include <QQuickView>

class PopoverController;

// The popover: a 380 x 500 window that hangs from the status item, flush against the panel, stays
// on screen, has the keyboard while shown, and goes away on a second click, on Escape, or on a
// click anywhere else. It stays in the accessibility tree, and is made once and reused, so the
// selected tab and the opened rows survive closing.
class PopoverWindow : public QQuickView {
    Q_OBJECT

public:
    static constexpr QSize size{380, 500};

    explicit PopoverWindow(PopoverController &controller);

    // A null anchor hangs the popover from the tray's corner of the screen.
    void toggle(const QRect &anchor);
    void showBelow(const QRect &anchor);

    // Where the window's top-left goes: centred under the anchor, above it when there is no
    // room below (a panel at the bottom of the screen), and always inside the available area.
    // An anchor in a panel (outside the available area) puts the popover flush against the
    // panel's edge.
    static QPoint placement(const QRect &anchor, QSize windowSize, const QRect &available);
    // The available area without the panel that holds the item: a panel that floats off the
    // screen's edge reserves less of the screen than its window covers.
    static QRect clearOfPanel(QRect available, const QRect &panel, const QRect &screen);
    // Where a panel's tray is when no host has said: the right end of the edge the panel takes
    // from the screen, the top one unless only the bottom one is taken.
    static QRect trayCorner(const QRect &screen, const QRect &available);

signals:
    // Logged by the shell: the time from a click to the frame that shows the popover.
    void shownAfter(qint64 nanoseconds);
    // A right click on the status item while the popover was open, which closed it.
    void statusItemRightClicked(const QPoint &at);

protected:
    void exposeEvent(QExposeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void closeAway();

    bool m_grabs = false; // the grabs see every click elsewhere
    // Only a focus this showing held can be lost: the last showing's may still be on its way.
    bool m_activeSinceShow = false;
    PopoverController &m_controller;
    ClickAwayShield m_shield;
    QRect m_anchor; // the status item it hangs from, in screen coordinates
    QElapsedTimer m_sinceOutsideClick;
    QElapsedTimer m_sinceShowRequest;
    QElapsedTimer m_sinceToggledOpen; // a click on the item that showed it
};
