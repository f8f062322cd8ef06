#pragma once

#include "DesktopNotifier.h"
#include "LoginItem.h"
#include "MatchAlerts.h"
#include "MenuEntry.h"
#include "PopoverController.h"
#include "PopoverWindow.h"
#include "Preferences.h"
#include "SleepWatcher.h"
#include "StatusItemSwitch.h"
#include "TodayViewModel.h"
#include "UpdateChecker.h"

#include <QPointer>
#include <QTimer>

class QMessageBox;

// Owns what hangs from the status item: the state object, the popover with its settings, the
// status item itself, the context menu and the match alerts, and keeps the item's title in step
// with the state object.
class MenuBarController : public QObject {
    Q_OBJECT

public:
    struct Setup {
        QString serviceURL;
        QString websiteURL;
        QString version;
        QString preferencesPath = Preferences::defaultPath();
    };

    MenuBarController(Setup setup, UpdateChecker &updater, QObject *parent = nullptr);

    void togglePopover(const QRect &anchor);
    void showPopover();
    // The popover on today's matches, as a click on a notification asks.
    void showToday();
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
    void announceNewerVersion(const UpdateCheck &result);
    void showOfflineNote();
    // Gives freed memory back to the system once the popover or a load has settled.
    void trimAfterActivity();

    Setup m_setup;
    UpdateChecker &m_updater;
    Preferences m_preferences;
    LoginItem m_loginItem;
    TodayViewModel m_vm;
    PopoverController m_popoverController;
    MatchAlerts m_alerts;
    SleepWatcher m_sleepWatcher;
    PopoverWindow m_popover;
    StatusItemSwitch m_statusItem;
    QPointer<QMessageBox> m_updateDialog;
    DesktopNotifier m_updateNotifier;
    QUrl m_announcedPage;
    QTimer m_trim;
};
