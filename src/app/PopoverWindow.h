#pragma once

#include <QElapsedTimer>
#include <QQuickView>

class PopoverController;

// The popover: a 380 x 500 window that hangs below the status item, stays on screen, and goes
// away on a second click, on Escape, or on a click anywhere else. No X window manager moves
// it, Xwayland's included; it holds the pointer and the keyboard while shown, as a popup does,
// yet stays in the accessibility tree. It is made once and reused, so the selected tab
// survives closing.
class PopoverWindow : public QQuickView {
    Q_OBJECT

public:
    static constexpr QSize size{380, 500};

    explicit PopoverWindow(PopoverController &controller);

    // A null anchor places the popover under the mouse pointer.
    void toggle(const QRect &anchor);
    void showBelow(const QRect &anchor);

    // Where the window's top-left goes: centred under the anchor, above it when there is no
    // room below (a panel at the bottom of the screen), and always inside the available area.
    static QPoint placement(const QRect &anchor, QSize windowSize, const QRect &available);

signals:
    // Logged by the shell: the time from a click to the frame that shows the popover.
    void shownAfter(qint64 nanoseconds);
    // A right click on the status item while the popover was open, which closed it.
    void statusItemRightClicked(const QPoint &at);

protected:
    void exposeEvent(QExposeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    PopoverController &m_controller;
    QRect m_anchor; // the status item it hangs from, in screen coordinates
    QElapsedTimer m_sinceOutsideClick;
    QElapsedTimer m_sinceShowRequest;
};
