#pragma once

#include "MenuEntry.h"
#include "PopoverController.h"
#include "PopoverWindow.h"
#include "SleepWatcher.h"
#include "StatusItemSwitch.h"
#include "TodayViewModel.h"
#include "UpdateChecker.h"

#include <QPointer>

class QMessageBox;

// Owns what hangs from the status item: the state object, the popover, the status item itself
// and the context menu, and keeps the item's title in step with the state object.
class MenuBarController : public QObject {
    Q_OBJECT

public:
    struct Setup {
        QString serviceURL;
        QString websiteURL;
        QString version;
    };

    MenuBarController(Setup setup, UpdateChecker &updater, QObject *parent = nullptr);

    void togglePopover(const QRect &anchor);
    void showPopover();
    void showContextMenu(const QPoint &at);

    void checkForUpdates();
    void openFeedback();
    void openDonate();
    void quitApp();

    // The right-click menu, made anew each time it opens.
    QList<MenuEntry> contextMenuEntries();
    // The menu panels show for a StatusNotifierItem: "Show Scores" first, since those panels
    // open the menu on a left click and never ask for the popover.
    QList<MenuEntry> exportedMenuEntries();

    static QString versionLabel(const QString &version);
    // The update dialog's second line, as rich text that shows the feed's words literally.
    static QString updateDetail(const UpdateCheck &result, const QString &version);
    // The page at the given path of the web site; empty when that does not make a valid URL.
    static QUrl pageURL(const QString &origin, const QString &path);

private:
    void showUpdateResult(const UpdateCheck &result);
    void showOfflineNote();

    Setup m_setup;
    UpdateChecker &m_updater;
    TodayViewModel m_vm;
    PopoverController m_popoverController;
    SleepWatcher m_sleepWatcher;
    PopoverWindow m_popover;
    StatusItemSwitch m_statusItem;
    QPointer<QMessageBox> m_updateDialog;
};
