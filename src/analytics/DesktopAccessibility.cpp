#include "DesktopAccessibility.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>

namespace {
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

struct Setting {
    const char *group;
    const char *key;
};
// The portal's own, for every desktop that fills it in (1 asks for reduced motion).
constexpr Setting appearanceReducedMotion{"org.freedesktop.appearance", "reduced-motion"};
// GNOME: its animations switch, and the magnifier's inversion, which shows only while the
// magnifier is on.
constexpr Setting gnomeAnimations{"org.gnome.desktop.interface", "enable-animations"};
constexpr Setting gnomeMagnifier{"org.gnome.desktop.a11y.applications", "screen-magnifier-enabled"};
constexpr Setting gnomeInversion{"org.gnome.desktop.a11y.magnifier", "invert-lightness"};
// KDE Plasma: the animation speed (0 turns them off), which its portal carries.
constexpr Setting kdeAnimationSpeed{"org.kde.kdeglobals.KDE", "AnimationDurationFactor"};
constexpr Setting portalSettings[] = {appearanceReducedMotion, gnomeAnimations, gnomeMagnifier,
                                      gnomeInversion, kdeAnimationSpeed};

// KDE's files, read where its portal is absent; KWin's inversion lives only there.
const QString kdeGlobals = QStringLiteral("kdeglobals");
const QString kwinConfig = QStringLiteral("kwinrc");

bool is(const Setting &setting, const QString &group, const QString &key)
{
    return group == QLatin1String(setting.group) && key == QLatin1String(setting.key);
}

// Older portals wrap the value of Read once more.
QVariant unwrapped(QVariant value)
{
    while (value.typeId() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<bool> boolean(const QVariant &value)
{
    if (value.typeId() != QMetaType::Bool)
        return std::nullopt;
    return value.toBool();
}

std::optional<bool> zeroSpeed(const QVariant &value)
{
    bool isNumber = false;
    const double speed = value.toDouble(&isNumber);
    return isNumber ? std::optional(speed == 0.0) : std::nullopt;
}

QString userFile(const QString &name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + name;
}

QVariant fileValue(const QString &name, const QString &key)
{
    return QSettings(userFile(name), QSettings::IniFormat).value(key);
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
    readKdeFiles();
    // KDE writes a new file and renames it over the old one, which ends the watch: watch anew.
    connect(&m_kdeFiles, &QFileSystemWatcher::fileChanged, this,
            &DesktopAccessibility::readKdeFiles);

    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(settingChanged(QDBusMessage)));
    for (const Setting &setting : portalSettings) {
        const QString group = QString::fromLatin1(setting.group);
        const QString key = QString::fromLatin1(setting.key);
        QDBusMessage read = QDBusMessage::createMethodCall(
            portalService, portalPath, settingsInterface, QStringLiteral("Read"));
        read << group << key;
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read, readTimeoutMs), this);
        ++m_readsPending;
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this, group, key](QDBusPendingCallWatcher *call) {
                    const QDBusPendingReply<QDBusVariant> reply = *call;
                    if (!reply.isError())
                        take(group, key, reply.value().variant());
                    call->deleteLater();
                    replyArrived();
                });
    }
}

void DesktopAccessibility::replyArrived()
{
    if (--m_readsPending == 0)
        emit read();
}

void DesktopAccessibility::whenRead(QObject *context, std::function<void()> then)
{
    if (m_readsPending == 0) {
        then();
        return;
    }
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection =
        connect(this, &DesktopAccessibility::read, context, [connection, then = std::move(then)] {
            QObject::disconnect(*connection);
            then();
        });
}

bool DesktopAccessibility::reduceMotion() const
{
    return m_appearanceReducedMotion || m_gnomeAnimationsOff ||
           m_kdeAnimationsOffByPortal.value_or(m_kdeAnimationsOffByFile);
}

bool DesktopAccessibility::invertColors() const
{
    return (m_gnomeMagnifierOn && m_gnomeMagnifierInverts) || m_kwinInverts;
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
    if (is(appearanceReducedMotion, group, key)) {
        bool isNumber = false;
        const uint preference = plain.toUInt(&isNumber);
        m_appearanceReducedMotion = isNumber && preference == 1;
    } else if (is(gnomeAnimations, group, key)) {
        m_gnomeAnimationsOff = !boolean(plain).value_or(true);
    } else if (is(gnomeMagnifier, group, key)) {
        m_gnomeMagnifierOn = boolean(plain).value_or(false);
    } else if (is(gnomeInversion, group, key)) {
        m_gnomeMagnifierInverts = boolean(plain).value_or(false);
    } else if (is(kdeAnimationSpeed, group, key)) {
        m_kdeAnimationsOffByPortal = zeroSpeed(plain);
    }
}

void DesktopAccessibility::readKdeFiles()
{
    m_kdeAnimationsOffByFile =
        zeroSpeed(fileValue(kdeGlobals, QStringLiteral("KDE/AnimationDurationFactor")))
            .value_or(false);
    m_kwinInverts = fileValue(kwinConfig, QStringLiteral("Plugins/invertEnabled")).toString() ==
                    QLatin1String("true");
    for (const QString &name : {kdeGlobals, kwinConfig}) {
        const QString path = userFile(name);
        if (QFile::exists(path) && !m_kdeFiles.files().contains(path))
            m_kdeFiles.addPath(path);
    }
}
