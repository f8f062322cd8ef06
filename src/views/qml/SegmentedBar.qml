pragma ComponentBehavior: Bound

import QtQuick

// A segmented switch drawn from the desktop palette, light or dark: the selected segment is
// raised in the base colour, the others sit on the button colour. A click only reports the
// segment; the owner changes its state, and currentIndex stays bound to that state. Each segment
// is a page tab; the selected one is the switch's stop in the Tab chain, and Left and Right take
// the focus along with the selection, so that a screen reader says the tab that now shows.
Rectangle {
    id: bar
    property var labels: []
    property real fontSize: 13
    property int currentIndex: 0
    signal activated(int index)
    implicitHeight: Math.round(fontSize * 1.6) + 4
    radius: 5
    color: Theme.palette.button
    border.color: Theme.divider
    Accessible.role: Accessible.PageTabList
    function step(by: int) {
        const next = bar.currentIndex + (LayoutMirroring.enabled ? -by : by)
        bar.activated(Math.max(0, Math.min(bar.labels.length - 1, next)))
    }
    // Whether one of the tabs has the keyboard.
    property bool holdsFocus: false
    // The focus follows the selection, once the owner has made it.
    onCurrentIndexChanged: if (holdsFocus) focusSelected()
    function focusSelected() {
        tabs.itemAt(currentIndex)?.forceActiveFocus()
    }

    Row {
        anchors.fill: parent
        anchors.margins: 1
        Repeater {
            id: tabs
            // A count, not the labels: a reload that gives the same labels keeps the tabs, and
            // with them the keyboard focus.
            model: bar.labels.length
            Rectangle {
                id: tab
                required property int index
                readonly property bool selected: index === bar.currentIndex
                readonly property string label: bar.labels[index] ?? ""
                Accessible.role: Accessible.PageTab
                Accessible.name: label
                Accessible.selectable: true
                Accessible.selected: selected
                Accessible.onPressAction: bar.activated(index)
                activeFocusOnTab: selected
                onActiveFocusChanged: bar.holdsFocus = activeFocus
                Keys.onLeftPressed: bar.step(-1)
                Keys.onRightPressed: bar.step(1)
                width: (bar.width - 2) / bar.labels.length
                height: parent.height
                radius: 4
                color: selected ? Theme.palette.base : "transparent"
                // The focus ring: the desktop's highlight around the focused segment.
                border.color: activeFocus ? Theme.palette.highlight
                                          : selected ? Theme.divider : "transparent"
                border.width: activeFocus ? 2 : 1
                Text {
                    textFormat: Text.PlainText
                    Accessible.ignored: true // the tab says it
                    anchors.centerIn: parent
                    width: parent.width - 8
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideRight
                    text: tab.label
                    font.pixelSize: bar.fontSize
                    font.weight: tab.selected ? Font.DemiBold : Font.Normal
                    color: Theme.text
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: bar.activated(tab.index)
                }
            }
        }
    }
}
