#pragma once

#include <QRect>
#include <QString>
#include <xcb/xcb.h>

// What kind of X display the app runs on, which decides how the popover learns of a click
// elsewhere. Off X11 neither question applies and there is no manager and no Xwayland.
class XDisplayProbe {
public:
    // The name of the EWMH window manager that runs; empty when none does.
    static QString windowManagerName();
    // Xwayland under a Wayland compositor: its grabs see nothing of the compositor's own
    // surfaces, so only the focus tells of a click on them.
    static bool isXwayland();
    // The frame of the dock (a panel) that holds the point, in root coordinates; null when no
    // dock does, or off X11.
    static QRect dockAt(const QPoint &point);

private:
    static xcb_connection_t *connection();
};
