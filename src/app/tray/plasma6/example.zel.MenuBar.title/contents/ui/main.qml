import QtQuick
import QtQuick.Layouts
import org.kde.plasma.components as PlasmaComponents3
import org.kde.plasma.plasmoid
import org.kde.plasma.workspace.dbus as DBus

// Plasma draws no label for a tray item: this applet shows Zel Menu Bar's whole title in the
// panel, read from the app's StatusNotifierItem, and a click on it opens the popover there, as
// a click on the tray icon does. Plasma 6 gives applets calls but no signals, so the label is
// read again each second.
PlasmoidItem {
    id: root

    // The item's bus name, found among the watcher's items by its Id.
    property string service: ""
    property string itemLabel: ""
    readonly property string title: service && itemLabel ? "\u{1F3CF}  " + itemLabel : "\u{1F3CF}"

    // The signature is the arguments' tuple, parentheses and all.
    function get(service, path, iface, property) {
        return DBus.SessionBus.asyncCall({service: service, path: path,
                                          iface: "org.freedesktop.DBus.Properties", member: "Get",
                                          arguments: [iface, property], signature: "(ss)"})
    }

    function findItem() {
        const items = get("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                          "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")
        items.finished.connect(() => {
            for (const entry of items.isError ? [] : items.value) {
                const name = String(entry).split("/")[0]
                const id = get(name, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Id")
                id.finished.connect(() => {
                    if (!id.isError && String(id.value) === "zel-menubar")
                        root.service = name
                })
            }
        })
    }

    function readLabel() {
        const label = get(service, "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                          "XAyatanaLabel")
        label.finished.connect(() => {
            root.itemLabel = label.isError ? "" : String(label.value)
            if (label.isError)
                root.service = ""
        })
    }

    DBus.DBusServiceWatcher {
        id: watcher
        busType: DBus.BusType.Session
        watchedService: "org.kde.StatusNotifierWatcher"
    }

    Timer {
        interval: 1000
        repeat: true
        triggeredOnStart: true
        running: watcher.registered
        onTriggered: root.service ? root.readLabel() : root.findItem()
    }

    // The applet is its own representation: a panel shows it as it is.
    preferredRepresentation: fullRepresentation
    toolTipMainText: service ? "" : i18n("Zel Menu Bar is not running")
    Layout.minimumWidth: label.implicitWidth
    Layout.preferredWidth: label.implicitWidth

    MouseArea {
        anchors.fill: parent
        Accessible.name: label.text
        Accessible.role: Accessible.Button

        onClicked: mouse => {
            const at = mapToGlobal(mouse.x, mouse.y)
            if (root.service)
                DBus.SessionBus.asyncCall({service: root.service, path: "/StatusNotifierItem",
                                           iface: "org.kde.StatusNotifierItem", member: "Activate",
                                           arguments: [Math.round(at.x), Math.round(at.y)],
                                           signature: "(ii)"})
        }

        PlasmaComponents3.Label {
            id: label
            anchors.centerIn: parent
            height: parent.height
            text: root.title
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
        }
    }
}
