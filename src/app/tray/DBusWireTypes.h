#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

// The structures StatusNotifierItem and com.canonical.dbusmenu put on the bus.

// One size of an icon: ARGB32 pixels in network byte order, D-Bus "(iiay)".
struct DBusImage {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using DBusImageList = QList<DBusImage>;

// "(sa(iiay)ss)": icon name, icon pixmaps, title, description.
struct DBusToolTip {
    QString iconName;
    DBusImageList images;
    QString title;
    QString description;
};

// "(ia{sv}av)": a menu item, its properties and its children (each a variant of the same type).
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayoutItem> children;
};

// "(ia{sv})": the properties of one item.
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuItemPropertiesList = QList<DBusMenuItemProperties>;

// "(ias)": the names of the properties an item no longer has.
struct DBusMenuItemKeys {
    int id = 0;
    QStringList names;
};
using DBusMenuItemKeysList = QList<DBusMenuItemKeys>;

// "(isvu)": one event of an EventGroup call.
struct DBusMenuEvent {
    int id = 0;
    QString eventID;
    QDBusVariant data;
    uint timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

// Registers every type above with Qt's D-Bus type system; call once before using them.
void registerDBusWireTypes();

QDBusArgument &operator<<(QDBusArgument &argument, const DBusImage &image);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusImage &image);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusToolTip &toolTip);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayoutItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayoutItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemKeys &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemKeys &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

Q_DECLARE_METATYPE(DBusImage)
Q_DECLARE_METATYPE(DBusToolTip)
Q_DECLARE_METATYPE(DBusMenuLayoutItem)
Q_DECLARE_METATYPE(DBusMenuItemProperties)
Q_DECLARE_METATYPE(DBusMenuItemKeys)
Q_DECLARE_METATYPE(DBusMenuEvent)
