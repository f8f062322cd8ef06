#include "DesktopAccessibility.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>

namespace {
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

// What each desktop calls the two settings: GNOME's animations switch and magnifier inversion,
// KDE's animation speed (0 turns them off).
struct Setting {
    const char *group;
    const char *key;
};
constexpr Setting gnomeAnimations{"org.gnome.desktop.interface", "enable-animations"};
constexpr Setting kdeAnimationSpeed{"org.kde.kdeglobals.KDE", "AnimationDurationFactor"};
constexpr Setting gnomeInversion{"org.gnome.desktop.a11y.magnifier", "invert-lightness"};

bool is(const Setting &setting, const QString &group, const QString &key)
{
    return group == QLatin1String(setting.group) && key == QLatin1String(setting.key);
}

// Older portals wrap the value of Read once more.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.typeId() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
} // namespace

DesktopAccessibility *DesktopAccessibility::instance()
{
    static QPointer<DesktopAccessibility> shared;
    if (!shared && QCoreApplication::instance())
        shared = new DesktopAccessibility(QCoreApplication::instance());
    return shared;
}

DesktopAccessibility::DesktopAccessibility(QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(settingChanged(QDBusMessage)));
    for (const Setting &setting : {gnomeAnimations, kdeAnimationSpeed, gnomeInversion}) {
        const QString group = QString::fromLatin1(setting.group);
        const QString key = QString::fromLatin1(setting.key);
        QDBusMessage read = QDBusMessage::createMethodCall(
            portalService, portalPath, settingsInterface, QStringLiteral("Read"));
        read << group << key;
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this, group, key](QDBusPendingCallWatcher *call) {
                    const QDBusPendingReply<QDBusVariant> reply = *call;
                    if (!reply.isError())
                        take(group, key, reply.value().variant());
                    call->deleteLater();
                });
    }
}

void DesktopAccessibility::settingChanged(const QDBusMessage &change)
{
    const QList<QVariant> arguments = change.arguments();
    if (arguments.size() == 3)
        take(arguments[0].toString(), arguments[1].toString(), arguments[2]);
}

void DesktopAccessibility::take(const QString &group, const QString &key, const QVariant &value)
{
    const QVariant plain = unwrapped(value);
    if (is(gnomeAnimations, group, key) && plain.typeId() == QMetaType::Bool)
        m_reduceMotion = !plain.toBool();
    else if (bool isNumber = false; is(kdeAnimationSpeed, group, key)) {
        const double speed = plain.toDouble(&isNumber);
        if (isNumber)
            m_reduceMotion = speed == 0.0;
    } else if (is(gnomeInversion, group, key) && plain.typeId() == QMetaType::Bool)
        m_invertColors = plain.toBool();
}
