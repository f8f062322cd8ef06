#include "DesktopNotifier.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");

// The "image-data" hint: raw RGBA rows.
struct NotificationImage {
    QImage rgba;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotificationImage &image)
{
    const QImage &rgba = image.rgba;
    argument.beginStructure();
    argument << rgba.width() << rgba.height() << int(rgba.bytesPerLine()) << true << 8 << 4
             << QByteArray(reinterpret_cast<const char *>(rgba.constBits()), rgba.sizeInBytes());
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotificationImage &)
{
    return argument; // only ever sent
}

} // namespace

Q_DECLARE_METATYPE(NotificationImage)

DesktopNotifier::DesktopNotifier(QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{
    qDBusRegisterMetaType<NotificationImage>();
    m_bus.connect(QString(), path, interface, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString)));
    m_bus.connect(QString(), path, interface, QStringLiteral("NotificationClosed"), this,
                  SLOT(notificationClosed(uint, uint)));
}

void DesktopNotifier::notify(const QString &title, const QString &body, const QImage &image)
{
    const Note note{title, body, image};
    if (m_capabilities) {
        send(note);
        return;
    }
    m_waiting.append(note);
    if (std::exchange(m_asking, true))
        return;
    auto *asked = new QDBusPendingCallWatcher(
        m_bus.asyncCall(QDBusMessage::createMethodCall(service, path, interface,
                                                       QStringLiteral("GetCapabilities"))),
        this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
        call->deleteLater();
        m_asking = false;
        const QDBusPendingReply<QStringList> reply = *call;
        // No server: what waited is dropped, and the next notification asks again.
        const QList<Note> waiting = std::exchange(m_waiting, {});
        if (reply.isError())
            return;
        m_capabilities = reply.value();
        for (const Note &queued : waiting)
            send(queued);
    });
}

void DesktopNotifier::send(const Note &note)
{
    const auto can = [this](const char *capability) {
        return m_capabilities->contains(QLatin1StringView(capability));
    };
    // A server that reads markup would read the network's text as markup.
    const QString body = can("body-markup") ? note.body.toHtmlEscaped() : note.body;
    QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("example.zel.MenuBar")}};
    if (!note.image.isNull() && (can("icon-static") || can("icon-multi")))
        hints.insert(QStringLiteral("image-data"),
                     QVariant::fromValue(
                         NotificationImage{note.image.convertToFormat(QImage::Format_RGBA8888)}));
    const QStringList actions =
        can("actions") ? QStringList{QStringLiteral("default"), QStringLiteral("Show Scores")}
                       : QStringList();
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Notify"));
    call << QStringLiteral("Zel Menu Bar") << uint(0) << QStringLiteral("zel-menubar") << note.title
         << body << actions << hints << -1;
    auto *sent = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(sent, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *reply) {
        reply->deleteLater();
        const QDBusPendingReply<uint> id = *reply;
        if (!id.isError())
            m_shown.insert(id.value());
    });
}

void DesktopNotifier::actionInvoked(uint id, const QString &action)
{
    if (action == QLatin1StringView("default") && m_shown.contains(id))
        emit defaultActionInvoked();
}

void DesktopNotifier::notificationClosed(uint id, uint)
{
    m_shown.remove(id);
}
