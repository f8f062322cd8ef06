#pragma once

#include <chrono>
#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

// The desktop portal's settings service on the test's session bus, answering from a table the
// test sets, as late as a portal that the bus is still starting.
class SettingsPortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    // GNOME with animations off and its magnifier inverting.
    static QVariantMap everythingOn();

    QVariantMap settings; // "group/key"
    std::chrono::milliseconds delay{0};

    // On a connection of its own, as the portal's process would be.
    bool publish();

public slots:
    QDBusVariant Read(const QString &group, const QString &key);

signals:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};
