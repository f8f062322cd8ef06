import QtQuick
import ZelMenuBar

Row {
    property string icon
    property color tint: Theme.secondary
    property string text
    property bool strong: false
    // Room for the text beside the icon; longer texts wrap.
    property real maximumWidth: 330
    spacing: 5

    SymbolIcon {
        y: 2
        width: 10
        height: 10
        name: parent.icon
        color: parent.tint
    }
    Text {
        textFormat: Text.PlainText
        width: Math.min(implicitWidth, parent.maximumWidth - 15)
        wrapMode: Text.Wrap
        text: parent.text
        font.pixelSize: 10
        color: parent.strong ? Theme.text : Theme.secondary
    }
}
