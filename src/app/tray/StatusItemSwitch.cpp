#include "StatusItemSwitch.h"

#include "StatusNotifierItem.h"
#include "StatusTitle.h"
#include "TrayIconStatusItem.h"

#include <QDBusConnectionInterface>
#include <QLoggingCategory>
#include <QStandardPaths>

namespace {
Q_LOGGING_CATEGORY(lcSwitch, "zel.tray")
} // namespace

StatusItemSwitch::StatusItemSwitch(DBusMenuExporter::EntrySource menuEntries, QObject *parent)
    : StatusItem(parent)
    , m_menuEntries(std::move(menuEntries))
    , m_title{StatusTitle::bat}
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    m_watcher.setConnection(bus);
    m_watcher.addWatchedService(StatusNotifierItem::watcherService());
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration |
                           QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { choose(true); });
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { choose(false); });
    choose(bus.isConnected() &&
           bus.interface()->isServiceRegistered(StatusNotifierItem::watcherService()));
}

StatusItemSwitch::~StatusItemSwitch() = default;

void StatusItemSwitch::setTitle(const StatusTitle::Line &title)
{
    m_title = title;
    m_backend->setTitle(title);
}

void StatusItemSwitch::setOfflineNote(const QString &note)
{
    m_offlineNote = note;
    m_backend->setOfflineNote(note);
}

QRect StatusItemSwitch::anchor() const
{
    return m_backend->anchor();
}

void StatusItemSwitch::choose(bool watcherPresent)
{
    // A watcher that restarted has forgotten the item, so a new watcher always means a new one.
    if (m_backend && !watcherPresent && !m_usesStatusNotifierItem)
        return;
    m_backend.reset();
    m_usesStatusNotifierItem = watcherPresent;
    if (watcherPresent)
        m_backend = std::make_unique<StatusNotifierItem>(
            m_menuEntries, QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                               QStringLiteral("/ZelMenuBar/status-icons"));
    else
        m_backend = std::make_unique<TrayIconStatusItem>();
    qCInfo(lcSwitch) << "status item:"
                     << (watcherPresent ? "StatusNotifierItem" : "tray icon (XEmbed)");
    connect(m_backend.get(), &StatusItem::leftClicked, this, &StatusItem::leftClicked);
    connect(m_backend.get(), &StatusItem::rightClicked, this, &StatusItem::rightClicked);
    connect(m_backend.get(), &StatusItem::menuOpened, this, &StatusItem::menuOpened);
    m_backend->setTitle(m_title);
    m_backend->setOfflineNote(m_offlineNote);
}
