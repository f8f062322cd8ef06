import QtQml
import QtQuick
import ZelMenuBar

// A tool tip drawn inside the popover, which has no Qt Quick Controls: the text shows below its
// parent, right edges aligned, once the pointer has rested on the parent for a moment.
Item {
    id: tip
    property string text
    property bool shown: false
    anchors.fill: parent
    z: 10

    HoverHandler {
        id: hover
        onHoveredChanged: if (!hovered) tip.shown = false
    }
    Timer {
        interval: 700
        running: hover.hovered && tip.text !== "" && !tip.shown
        onTriggered: tip.shown = true
    }
    Rectangle {
        visible: tip.shown && tip.text !== ""
        anchors.right: parent.right
        y: parent.height + 4
        width: label.width + 12
        height: label.height + 8
        radius: 4
        color: Theme.background
        border.color: Theme.divider
        Text {
            id: label
            textFormat: Text.PlainText
            anchors.centerIn: parent
            width: Math.min(implicitWidth, 280)
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
            text: tip.text
            font.pixelSize: 11
            color: Theme.text
        }
    }
}
