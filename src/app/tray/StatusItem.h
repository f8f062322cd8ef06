#pragma once

#include "StatusTitle.h"

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

// The item in the panel that shows the title and reports clicks. A null anchor means the
// backend does not know where the user clicked.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    virtual void setTitle(const StatusTitle::Line &title) = 0;
    // Said after the title while today's data is out of date ("Offline · Updated 11:54");
    // empty while it is current.
    virtual void setOfflineNote(const QString &note) = 0;
    // Where the item is as far as the host has told: null before it said.
    virtual QRect anchor() const = 0;

signals:
    void leftClicked(const QRect &anchor);
    void rightClicked(const QPoint &at);
    // A host that draws the item's menu itself opened it.
    void menuOpened();
};
