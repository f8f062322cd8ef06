import QtQuick
import ZelMenuBar

Row {
    property string icon
    property color tint: Theme.secondary
    property string text
    property bool strong: false
    spacing: 5

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        width: 10
        height: 10
        name: parent.icon
        color: parent.tint
    }
    Text {
        text: parent.text
        font.pixelSize: 10
        color: parent.strong ? Theme.text : Theme.secondary
    }
}
