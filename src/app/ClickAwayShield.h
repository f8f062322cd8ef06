#pragma once

#include <QRasterWindow>

// An invisible window over the work area, just under the popover. Under Xwayland the app sees
// nothing of the compositor's desktop, and a shell may leave the focus where it was when the
// desktop is clicked: the click then lands here, and says so.
class ClickAwayShield : public QRasterWindow {
    Q_OBJECT

public:
    ClickAwayShield();

    // Shows it over the screen's work area; a popover that bypasses the window manager needs
    // a shield that does too, or the manager stacks the shield over it.
    void cover(QScreen *screen, bool bypassManager);

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
};
