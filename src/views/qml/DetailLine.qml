import QtQuick
import ZelMenuBar

Row {
    property string icon
    property color tint: Theme.secondary
    property string text
    property bool strong: false
    // Room for the text beside the icon; longer texts are elided.
    property real maximumWidth: 330
    spacing: 5

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        width: 10
        height: 10
        name: parent.icon
        color: parent.tint
    }
    Text {
        textFormat: Text.PlainText
        width: Math.min(implicitWidth, parent.maximumWidth - 15)
        elide: Text.ElideRight
        text: parent.text
        font.pixelSize: 10
        color: parent.strong ? Theme.text : Theme.secondary
    }
}
