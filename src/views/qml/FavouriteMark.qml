import QtQuick
import ZelMenuBar

// The small star on the favourite team's badge.
Text {
    textFormat: Text.PlainText
    text: "\u2605"
    font.pixelSize: 10
    color: Theme.yellow
    style: Text.Outline
    styleColor: Theme.background
    Accessible.name: qsTr("Favourite")
    Accessible.ignored: !visible
}
