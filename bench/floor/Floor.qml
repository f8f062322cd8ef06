import QtQuick

Rectangle {
    SystemPalette { id: colours }
    color: colours.window
    Text {
        anchors.centerIn: parent
        text: features ? "\u{1F3CF}  Zel 2026" : "Scores"
        font.bold: features
        color: colours.windowText
    }
}
