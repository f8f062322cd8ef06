#pragma once

#include <functional>
#include <QKeySequence>
#include <QList>
#include <QString>

class QMenu;
class QWidget;

// One line of the context menu; an entry without a label is a separator.
struct MenuEntry {
    QString label;
    bool enabled = true;
    QKeySequence shortcut;
    std::function<void()> trigger;

    bool isSeparator() const { return label.isEmpty(); }
    static MenuEntry separator() { return {}; }

    // A new pop-up menu whose actions run the entries' triggers; the caller owns it.
    static QMenu *createMenu(const QList<MenuEntry> &entries, QWidget *parent = nullptr);
};
