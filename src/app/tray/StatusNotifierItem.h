#pragma once

#include "DBusMenuExporter.h"
#include "DBusWireTypes.h"
#include "StatusItem.h"

#include <QDBusConnection>
#include <QDBusObjectPath>

// The status item as an org.kde.StatusNotifierItem: the bat as the icon, with the tray icon's
// dot for a live match, a delay or old data (Plasma draws no label, so there the icon is all a
// glance gets), both as pixels and by a name in a theme folder of the app's own, since some hosts
// draw only a named icon and others prefer the name to the pixels, the rest of the title as the
// Ayatana label (hosts draw the label after the icon, so the panel reads as the title), the whole
// title as the tool tip, and the context menu exported over dbusmenu.
class StatusNotifierItem : public StatusItem {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(DBusImageList IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyText)
    Q_PROPERTY(DBusImageList OverlayIconPixmap READ noImages)
    Q_PROPERTY(QString AttentionIconName READ emptyText)
    Q_PROPERTY(DBusImageList AttentionIconPixmap READ noImages)
    Q_PROPERTY(QString AttentionMovieName READ emptyText)
    Q_PROPERTY(DBusToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString IconAccessibleDesc READ accessibleName)
    Q_PROPERTY(QString XAyatanaLabel READ labelForHost)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
    Q_PROPERTY(uint XAyatanaOrderingIndex READ orderingIndex)

public:
    // Registers on the session bus and with the StatusNotifierWatcher. The named icons go to a
    // theme in the icon folder; without one, hosts get the pixels alone.
    StatusNotifierItem(DBusMenuExporter::EntrySource menuEntries, const QString &iconFolder,
                       QObject *parent = nullptr);
    ~StatusNotifierItem() override;

    void setTitle(const StatusTitle::Line &title) override;
    void setOfflineNote(const QString &note) override;
    QRect anchor() const override { return m_pointedAt; }

    // The title without its leading bat and the spaces after it.
    static QString labelOf(const QString &title);
    // The bus name of the watcher that items register with, and whose coming and going the
    // status item follows.
    static QString watcherService() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("zel-menubar"); }
    QString title() const { return QStringLiteral("Zel Menu Bar"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconName() const;
    QString iconThemePath() const { return m_iconThemePath; }
    DBusImageList iconPixmap() const { return m_icon; }
    QString emptyText() const { return {}; }
    DBusImageList noImages() const { return {}; }
    DBusToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(QStringLiteral("/MenuBar")); }
    QString label() const { return labelOf(m_title); }
    // What a screen reader says of the item: its name, then the title in words where it has one.
    // Title stays the bare name, which hosts list their items by.
    QString accessibleName() const;
    QString labelForHost(); // notes the host's first read
    QString labelGuide() const;
    uint orderingIndex() const { return 0; }

public slots:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

signals:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewAttentionIcon();
    Q_SCRIPTABLE void NewOverlayIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString &label, const QString &guide);

private:
    void drawIcon();
    // Every picture the item can show, as PNGs of a hicolor theme under the folder.
    static bool writeIconTheme(const QString &folder);
    // The box a host's point stands for; null for the 0, 0 of a host that does not know it.
    QRect pointAt(int x, int y);
    // A watcher that has just taken its bus name may not answer yet: try a few times.
    void registerWithWatcher(int attemptsLeft);
    Q_SLOT void watcherDropped(const QString &item);

    QDBusConnection m_bus;
    QString m_serviceName;
    DBusMenuExporter m_menu;
    DBusImageList m_icon;
    QString m_iconThemePath;
    QString m_title;
    StatusTitle::State m_state = StatusTitle::State::Quiet;
    QString m_offlineNote;
    QRect m_pointedAt;
    // Whether a host has read the label: only then are new labels announced.
    bool m_labelRead = false;
    int m_registrationsAfterDrop = 5;
};
