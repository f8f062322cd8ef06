#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

// The panels of a Plasma session as its shell's scripting interface describes them. Under
// Wayland they are no X windows the app could see, and a floating one stands clear of the edge
// that the work area ends at.
class PlasmaPanels {
public:
    // The surface of the panel that holds the point; null where no Plasma shell answers, or off
    // Plasma. Asks the shell, so only for a popover about to open.
    static QRect panelAt(const QPoint &point);
    // The surfaces the shell's answer describes: per panel a line "location thickness floating
    // x y width height", the last four its screen's.
    static QList<QRect> surfaces(const QString &answer);
};
