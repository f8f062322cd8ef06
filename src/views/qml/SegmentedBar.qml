pragma ComponentBehavior: Bound

import QtQuick

// A segmented switch drawn from the desktop palette, light or dark: the selected segment is
// raised in the base colour, the others sit on the button colour. A click only reports the
// segment; the owner changes its state, and currentIndex stays bound to that state.
Rectangle {
    id: bar
    property var labels: []
    property real fontSize: 13
    property int currentIndex: 0
    signal activated(int index)
    implicitHeight: Math.round(fontSize * 1.6) + 4
    radius: 5
    color: Theme.palette.button
    // The focus ring: the desktop's highlight around the whole switch.
    border.color: activeFocus ? Theme.palette.highlight : Theme.divider
    border.width: activeFocus ? 2 : 1
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTabList
    function step(by: int) {
        const next = bar.currentIndex + (LayoutMirroring.enabled ? -by : by)
        bar.activated(Math.max(0, Math.min(bar.labels.length - 1, next)))
    }
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Row {
        anchors.fill: parent
        anchors.margins: 1
        Repeater {
            model: bar.labels
            Rectangle {
                required property string modelData
                required property int index
                readonly property bool selected: index === bar.currentIndex
                Accessible.role: Accessible.PageTab
                Accessible.name: modelData
                Accessible.selectable: true
                Accessible.selected: selected
                Accessible.onPressAction: bar.activated(index)
                width: (bar.width - 2) / bar.labels.length
                height: parent.height
                radius: 4
                color: selected ? Theme.palette.base : "transparent"
                border.color: selected ? Theme.divider : "transparent"
                Text {
                    textFormat: Text.PlainText
                    anchors.centerIn: parent
                    width: parent.width - 8
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideRight
                    text: parent.modelData
                    font.pixelSize: bar.fontSize
                    font.weight: parent.selected ? Font.DemiBold : Font.Normal
                    color: Theme.text
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: bar.activated(parent.index)
                }
            }
        }
    }
}
