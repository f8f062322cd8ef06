import QtQuick
import QtQuick.Layouts
import org.kde.plasma.components as PlasmaComponents3
import org.kde.plasma.plasmoid
import org.kde.plasma.workspace.dbus as DBus

// Plasma draws no label for a tray item: this applet shows Zel Menu Bar's whole title in the
// panel, read from the app's StatusNotifierItem, and a click on it opens the popover there, as
// a click on the tray icon does. Plasma 6 gives applets calls but no signals, so the label is
// read again each second while the app runs.
PlasmoidItem {
    id: root

    readonly property string service: "example.zel.MenuBar.StatusItem"
    property string itemLabel: ""
    readonly property string title: app.registered && itemLabel ? "\u{1F3CF}  " + itemLabel
                                                                 : "\u{1F3CF}"

    // The signature is the arguments' tuple, parentheses and all.
    function call(iface, member, args, signature) {
        return DBus.SessionBus.asyncCall({service: root.service, path: "/StatusNotifierItem",
                                          iface: iface, member: member, arguments: args,
                                          signature: signature})
    }

    DBus.DBusServiceWatcher {
        id: app
        busType: DBus.BusType.Session
        watchedService: root.service
    }

    Timer {
        interval: 1000
        repeat: true
        triggeredOnStart: true
        running: app.registered
        onTriggered: {
            const reply = root.call("org.freedesktop.DBus.Properties", "Get",
                                    ["org.kde.StatusNotifierItem", "XAyatanaLabel"], "(ss)")
            reply.finished.connect(() => root.itemLabel = reply.isError ? "" : String(reply.value))
        }
    }

    // The applet is its own representation: a panel shows it as it is.
    preferredRepresentation: fullRepresentation
    toolTipMainText: app.registered ? "" : i18n("Zel Menu Bar is not running")
    Layout.minimumWidth: label.implicitWidth
    Layout.preferredWidth: label.implicitWidth

    MouseArea {
        anchors.fill: parent
        Accessible.name: label.text
        Accessible.role: Accessible.Button

        onClicked: mouse => {
            const at = mapToGlobal(mouse.x, mouse.y)
            root.call("org.kde.StatusNotifierItem", "Activate", [Math.round(at.x), Math.round(at.y)],
                      "(ii)")
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
