#include "DBusMenuExporter.h"

#include <QGuiApplication>
#include <QMetaObject>

using namespace Qt::Literals::StringLiterals;

namespace {

// dbusmenu writes a shortcut as key chords, each a list of modifier names and a key.
QList<QStringList> shortcutChords(const QKeySequence &sequence)
{
    QList<QStringList> chords;
    for (int i = 0; i < sequence.count(); ++i) {
        const QKeyCombination combination = sequence[i];
        QStringList chord;
        const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
        if (modifiers & Qt::ControlModifier)
            chord << QStringLiteral("Control");
        if (modifiers & Qt::AltModifier)
            chord << QStringLiteral("Alt");
        if (modifiers & Qt::ShiftModifier)
            chord << QStringLiteral("Shift");
        if (modifiers & Qt::MetaModifier)
            chord << QStringLiteral("Super");
        chord << QKeySequence(combination.key()).toString(QKeySequence::PortableText);
        chords << chord;
    }
    return chords;
}

} // namespace

DBusMenuExporter::DBusMenuExporter(EntrySource source, QObject *parent)
    : QObject(parent)
    , m_source(std::move(source))
{
    refresh();
}

QString DBusMenuExporter::textDirection() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl")
                                                                 : QStringLiteral("ltr");
}

QVariantMap DBusMenuExporter::propertiesOf(const MenuEntry &entry)
{
    if (entry.isSeparator())
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    QVariantMap properties{
        {QStringLiteral("label"), QString(entry.label).replace(u'_', QStringLiteral("__"))}};
    if (!entry.enabled)
        properties.insert(QStringLiteral("enabled"), false);
    if (!entry.shortcut.isEmpty())
        properties.insert(QStringLiteral("shortcut"),
                          QVariant::fromValue(shortcutChords(entry.shortcut)));
    return properties;
}

void DBusMenuExporter::refresh()
{
    m_entries = m_source();
    QList<QVariantMap> properties;
    properties.reserve(m_entries.size());
    for (const MenuEntry &entry : std::as_const(m_entries))
        properties.append(propertiesOf(entry));
    if (properties == m_properties)
        return;
    const bool first = m_properties.isEmpty();
    m_properties = properties;
    if (!first) {
        ++m_revision;
        emit LayoutUpdated(m_revision, 0);
    }
}

QVariantMap DBusMenuExporter::propertiesOf(int id, const QStringList &names) const
{
    QVariantMap all =
        id == 0 ? QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}}
                : m_properties.value(id - 1);
    if (names.isEmpty())
        return all;
    QVariantMap chosen;
    for (const QString &name : names) {
        if (all.contains(name))
            chosen.insert(name, all.value(name));
    }
    return chosen;
}

uint DBusMenuExporter::GetLayout(int parentID, int recursionDepth, const QStringList &propertyNames,
                                 DBusMenuLayoutItem &layout)
{
    if (parentID == 0)
        refresh();
    if (!exists(parentID)) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("No menu item %1").arg(parentID));
        return m_revision;
    }
    layout = {parentID, propertiesOf(parentID, propertyNames), {}};
    if (parentID == 0 && recursionDepth != 0) {
        for (int id = 1; id <= m_entries.size(); ++id)
            layout.children.append({id, propertiesOf(id, propertyNames), {}});
    }
    return m_revision;
}

DBusMenuItemPropertiesList DBusMenuExporter::GetGroupProperties(const QList<int> &ids,
                                                                const QStringList &propertyNames)
{
    DBusMenuItemPropertiesList list;
    for (int id : ids) {
        if (exists(id))
            list.append({id, propertiesOf(id, propertyNames)});
    }
    return list;
}

QDBusVariant DBusMenuExporter::GetProperty(int id, const QString &name)
{
    const QVariantMap properties = propertiesOf(id, {name});
    if (!exists(id) || properties.isEmpty()) {
        sendErrorReply(QDBusError::InvalidArgs,
                       QStringLiteral("No property %1 on item %2").arg(name).arg(id));
        return QDBusVariant(QString());
    }
    return QDBusVariant(properties.value(name));
}

void DBusMenuExporter::Event(int id, const QString &eventID, const QDBusVariant &, uint)
{
    if (id == 0 && eventID == "opened"_L1)
        emit opened();
    if (eventID != "clicked"_L1 || id < 1 || id > m_entries.size())
        return;
    const MenuEntry &entry = m_entries.at(id - 1);
    if (!entry.enabled || !entry.trigger)
        return;
    // After the reply: the action may open windows or quit.
    QMetaObject::invokeMethod(this, entry.trigger, Qt::QueuedConnection);
}

QList<int> DBusMenuExporter::EventGroup(const DBusMenuEventList &events)
{
    QList<int> idErrors;
    for (const DBusMenuEvent &event : events) {
        if (exists(event.id))
            Event(event.id, event.eventID, event.data, event.timestamp);
        else
            idErrors.append(event.id);
    }
    return idErrors;
}

bool DBusMenuExporter::AboutToShow(int id)
{
    if (id != 0)
        return false;
    const uint before = m_revision;
    refresh();
    return m_revision != before;
}

QList<int> DBusMenuExporter::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> updatesNeeded;
    for (int id : ids) {
        if (!exists(id))
            idErrors.append(id);
        else if (AboutToShow(id))
            updatesNeeded.append(id);
    }
    return updatesNeeded;
}
