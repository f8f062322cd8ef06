#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

// The status item's picture: the application's bat, marked with a dot while a match is live
// (red) or delayed (yellow), for trays that cannot show the title's text.
class StatusIconArt {
public:
    enum class State { Quiet, Live, Delayed };

    static State stateOf(const QString &title);
    static QImage bat(int side);
    static QIcon iconFor(State state);
};
