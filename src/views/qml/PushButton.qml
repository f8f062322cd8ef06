import QtQuick
import ZelMenuBar

// A push button in the desktop's colours: a label, or a symbol when it is a flat tool button.
// Space and Return press it when it has the keyboard focus.
Rectangle {
    id: button
    property string text
    property string symbol
    property bool flat: false
    signal clicked()

    implicitWidth: symbol !== "" ? 26 : label.implicitWidth + 28
    implicitHeight: symbol !== "" ? 26 : label.implicitHeight + 10
    radius: 5
    // Flat tool buttons too: a keyboard user reaches Refresh and Settings with Tab.
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.ignored: !visible
    Accessible.onPressAction: button.clicked()
    color: mouse.pressed ? Theme.placeholder
                         : (flat ? (mouse.containsMouse ? Theme.placeholder : "transparent")
                                 : Theme.palette.button)
    border.color: activeFocus ? Theme.palette.highlight : (flat ? "transparent" : Theme.divider)

    Keys.onSpacePressed: button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Text {
        textFormat: Text.PlainText
        id: label
        anchors.centerIn: parent
        visible: button.symbol === ""
        text: button.text
        font.pixelSize: 13
        color: Theme.text
    }
    SymbolIcon {
        anchors.centerIn: parent
        visible: button.symbol !== ""
        width: 13
        height: 13
        name: button.symbol
        color: Theme.text
    }
    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: button.flat
        onClicked: button.clicked()
    }
}
