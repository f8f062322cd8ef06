import QtQuick

Rectangle {
    SystemPalette { id: colours }
    color: colours.window
    Text {
        anchors.centerIn: parent
        text: "Scores"
        color: colours.windowText
    }
}
