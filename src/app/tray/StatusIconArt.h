#pragma once

#include "StatusTitle.h"

#include <QIcon>
#include <QImage>
#include <QString>

// The status item's picture: the application's bat, marked with a dot while a match is live
// (red) or delayed (yellow), for trays that cannot show the title's text. While the data is out
// of date the dot is grey, whatever the title says.
class StatusIconArt {
public:
    using State = StatusTitle::State;

    static QImage bat(int side);
    static QImage image(State state, bool offline, int side);
    static QIcon iconFor(State state, bool offline);
    static QColor dotColour(State state, bool offline); // invalid: no dot
    // A name for each picture, so that hosts that look icons up by name never show a stale one.
    static QString nameFor(State state, bool offline);
};
