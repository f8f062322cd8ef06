import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.plasma.components 3.0 as PlasmaComponents3
import org.kde.plasma.core 2.0 as PlasmaCore
import org.kde.plasma.plasmoid 2.0

// Plasma draws no label for a tray item: this applet shows Zel Menu Bar's whole title in the
// panel, read from the app's StatusNotifierItem through Plasma's own engine, and a click on it
// opens the popover there, as a click on the tray icon does.
Item {
    id: root

    PlasmaCore.DataSource {
        id: tray
        engine: "statusnotifieritem"
        interval: 0
        onSourceAdded: source => connectSource(source)
        Component.onCompleted: connectedSources = sources
    }

    readonly property string item: {
        for (const source of tray.connectedSources) {
            if (tray.data[source] && tray.data[source].Id === "zel-menubar")
                return source
        }
        return ""
    }
    // The tool tip's title is the whole title, escaped as rich text; the bat alone while the
    // app is not running.
    readonly property string title: item ? tray.data[item].ToolTipTitle : "\u{1F3CF}"

    function activate(x, y) {
        if (!item)
            return
        const service = tray.serviceForSource(item)
        const operation = service.operationDescription("Activate")
        operation.x = x
        operation.y = y
        service.startOperationCall(operation)
    }

    Plasmoid.preferredRepresentation: Plasmoid.compactRepresentation
    Plasmoid.toolTipMainText: item ? "" : i18n("Zel Menu Bar is not running")
    Plasmoid.compactRepresentation: MouseArea {
        Layout.minimumWidth: label.implicitWidth
        Layout.preferredWidth: label.implicitWidth
        Accessible.name: label.text
        Accessible.role: Accessible.Button

        onClicked: mouse => {
            const at = mapToGlobal(mouse.x, mouse.y)
            root.activate(at.x, at.y)
        }

        PlasmaComponents3.Label {
            id: label
            anchors.centerIn: parent
            height: parent.height
            text: root.title
            textFormat: Text.StyledText
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
        }
    }
}
