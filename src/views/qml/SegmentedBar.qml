import QtQuick
import QtQuick.Controls

// A segmented switch that takes its colours from the desktop palette, light or dark.
TabBar {
    id: bar
    property var labels: []
    property real fontSize: 13
    focusPolicy: Qt.NoFocus
    palette.window: Theme.palette.window
    palette.windowText: Theme.palette.windowText
    palette.button: Theme.palette.button
    palette.buttonText: Theme.palette.buttonText
    palette.base: Theme.palette.base
    palette.mid: Theme.palette.mid
    palette.dark: Theme.palette.dark
    palette.light: Theme.palette.light
    palette.midlight: Theme.palette.midlight
    palette.shadow: Theme.palette.shadow
    palette.highlight: Theme.palette.highlight

    Repeater {
        model: bar.labels
        TabButton {
            required property string modelData
            text: modelData
            font.pixelSize: bar.fontSize
            focusPolicy: Qt.NoFocus
        }
    }
}
