#include "SettingsPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

QVariantMap SettingsPortal::everythingOn()
{
    return {{u"org.gnome.desktop.interface/enable-animations"_s, false},
            {u"org.gnome.desktop.a11y.applications/screen-magnifier-enabled"_s, true},
            {u"org.gnome.desktop.a11y.magnifier/invert-lightness"_s, true}};
}

bool SettingsPortal::publish()
{
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    return bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                              QDBusConnection::ExportAllSlots |
                                  QDBusConnection::ExportAllSignals) &&
           bus.registerService(u"org.freedesktop.portal.Desktop"_s);
}

QDBusVariant SettingsPortal::Read(const QString &group, const QString &key)
{
    const QString name = group + u'/' + key;
    if (!settings.contains(name)) {
        sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
        return {};
    }
    setDelayedReply(true);
    // Wrapped twice, as older portals answer.
    const QDBusMessage reply = message().createReply(
        QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(settings.value(name))))));
    QTimer::singleShot(delay, this, [bus = connection(), reply] { bus.send(reply); });
    return {};
}
