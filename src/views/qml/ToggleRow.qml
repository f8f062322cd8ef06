import QtQuick
import ZelMenuBar

// A labelled on/off switch in the desktop's colours. Space, Return or a click flips it; the
// owner changes its state, and `on` stays bound to that state.
Item {
    id: toggle
    property string text
    property bool on: false
    signal toggled()

    implicitHeight: 30
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onToggleAction: toggle.toggled()
    Accessible.onPressAction: toggle.toggled()
    Keys.onSpacePressed: toggle.toggled()
    Keys.onReturnPressed: toggle.toggled()
    Keys.onEnterPressed: toggle.toggled()

    Text {
        textFormat: Text.PlainText
        anchors.left: parent.left
        anchors.right: track.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: toggle.text
        elide: Text.ElideRight
        font.pixelSize: 13
        color: Theme.text
    }
    Rectangle {
        id: track
        objectName: "track"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 18
        radius: 9
        color: toggle.on ? Theme.palette.highlight : Theme.placeholder
        border.color: toggle.activeFocus ? Theme.palette.highlight : Theme.divider
        Rectangle {
            width: 14
            height: 14
            radius: 7
            y: 2
            x: toggle.on ? parent.width - width - 2 : 2
            color: toggle.on ? Theme.palette.highlightedText : Theme.palette.base
            border.color: Theme.divider
        }
    }
    MouseArea {
        anchors.fill: parent
        onClicked: toggle.toggled()
    }
}
