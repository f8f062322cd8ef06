#include "StatusNotifierHost.h"

#include "DBusWireTypes.h"
#include "DesktopSession.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

StatusNotifierHost::StatusNotifierHost(const DesktopSession &desktop)
    : m_desktop(desktop)
{
    registerDBusWireTypes();
}

bool StatusNotifierHost::startWatcher(QProcess &watcher)
{
    DesktopSession::tieToTest(watcher);
    watcher.setProcessEnvironment(m_desktop.environment());
    watcher.start(u"status-notifier-watcher"_s);
    if (!watcher.waitForStarted())
        return false;
    // A watcher only counts a host that is present.
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString host = u"org.kde.StatusNotifierHost-%1"_s.arg(QCoreApplication::applicationPid());
    bus.registerService(host);
    // The watcher takes its name before it exports its object, and the previous test's
    // watcher may still hold the name for a moment: ask this one until it answers.
    return QTest::qWaitFor(
        [&] {
            if (bus.interface()->servicePid(u"org.kde.StatusNotifierWatcher"_s).value() !=
                watcher.processId())
                return false;
            QDBusInterface proxy(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                                 u"org.kde.StatusNotifierWatcher"_s, bus);
            return proxy.call(u"RegisterStatusNotifierHost"_s, host).type() ==
                   QDBusMessage::ReplyMessage;
        },
        10000);
}

QString StatusNotifierHost::registeredItem()
{
    QDBusInterface watcher(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                           u"org.kde.StatusNotifierWatcher"_s, QDBusConnection::sessionBus());
    const QStringList items = watcher.property("RegisteredStatusNotifierItems").toStringList();
    return items.isEmpty() ? QString() : items.first().section(u'/', 0, 0);
}

QVariant StatusNotifierHost::itemProperty(const QString &item, const QString &name)
{
    QDBusMessage get = QDBusMessage::createMethodCall(
        item, u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get << u"org.kde.StatusNotifierItem"_s << name;
    const QDBusReply<QDBusVariant> reply = QDBusConnection::sessionBus().call(get);
    return reply.isValid() ? reply.value().variant() : QVariant();
}

QString StatusNotifierHost::toolTipTitle(const QString &item)
{
    const QVariant value = itemProperty(item, u"ToolTip"_s);
    return qdbus_cast<DBusToolTip>(value.value<QDBusArgument>()).title;
}

void StatusNotifierHost::callItem(const QString &item, const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(item, u"/StatusNotifierItem"_s,
                                                       u"org.kde.StatusNotifierItem"_s, method);
    call << 600 << 30;
    QDBusConnection::sessionBus().call(call);
}

namespace {
QString menuPath(const QString &item)
{
    return qvariant_cast<QDBusObjectPath>(StatusNotifierHost::itemProperty(item, u"Menu"_s)).path();
}
} // namespace

QList<std::pair<int, QString>> StatusNotifierHost::menuEntries(const QString &item)
{
    QDBusMessage getLayout = QDBusMessage::createMethodCall(
        item, menuPath(item), u"com.canonical.dbusmenu"_s, u"GetLayout"_s);
    getLayout << 0 << -1 << QStringList();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(getLayout);
    QList<std::pair<int, QString>> entries;
    if (reply.type() != QDBusMessage::ReplyMessage)
        return entries;
    for (const auto &child : qdbus_cast<DBusMenuLayoutItem>(reply.arguments().at(1)).children)
        entries.append({child.id, child.properties.value(u"label"_s).toString()});
    return entries;
}

void StatusNotifierHost::clickMenuEntry(const QString &item, int id)
{
    QDBusMessage click = QDBusMessage::createMethodCall(item, menuPath(item),
                                                        u"com.canonical.dbusmenu"_s, u"Event"_s);
    click << id << u"clicked"_s << QVariant::fromValue(QDBusVariant(QString())) << 0u;
    QDBusConnection::sessionBus().call(click);
}
