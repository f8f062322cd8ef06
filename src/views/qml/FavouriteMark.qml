import QtQuick
import ZelMenuBar

// The small star on the favourite team's badge; its row says it in words, so the star itself,
// hidden on most badges, stays out of a screen reader's way.
Text {
    textFormat: Text.PlainText
    text: "\u2605"
    font.pixelSize: 10
    color: Theme.yellow
    style: Text.Outline
    styleColor: Theme.background
}
