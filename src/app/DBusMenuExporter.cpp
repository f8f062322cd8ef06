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
            chord << u"Control"_s;
        if (modifiers & Qt::AltModifier)
            chord << u"Alt"_s;
        if (modifiers & Qt::ShiftModifier)
            chord << u"Shift"_s;
        if (modifiers & Qt::MetaModifier)
            chord << u"Super"_s;
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
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

QVariantMap DBusMenuExporter::propertiesOf(const MenuEntry &entry)
{
    if (entry.isSeparator())
        return {{u"type"_s, u"separator"_s}};
    QVariantMap properties{{u"label"_s, QString(entry.label).replace(u'_', u"__"_s)}};
    if (!entry.enabled)
        properties.insert(u"enabled"_s, false);
    if (!entry.shortcut.isEmpty())
        properties.insert(u"shortcut"_s, QVariant::fromValue(shortcutChords(entry.shortcut)));
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
        id == 0 ? QVariantMap{{u"children-display"_s, u"submenu"_s}} : m_properties.value(id - 1);
    if (names.isEmpty())
        return all;
    QVariantMap chosen;
    for (const QString &name : names) {
        if (all.contains(name))
            chosen.insert(name, all.value(name));
    }
    return chosen;
}

uint DBusMenuExporter::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                 DBusMenuLayoutItem &layout)
{
    if (parentId == 0)
        refresh();
    if (!exists(parentId)) {
        sendErrorReply(QDBusError::InvalidArgs, u"No menu item %1"_s.arg(parentId));
        return m_revision;
    }
    layout = {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0) {
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
        sendErrorReply(QDBusError::InvalidArgs, u"No property %1 on item %2"_s.arg(name).arg(id));
        return QDBusVariant(QString());
    }
    return QDBusVariant(properties.value(name));
}

void DBusMenuExporter::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (eventId != "clicked"_L1 || id < 1 || id > m_entries.size())
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
            Event(event.id, event.eventId, event.data, event.timestamp);
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
