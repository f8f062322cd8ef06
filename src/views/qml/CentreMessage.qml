import QtQuick
import QtQuick.Controls

Column {
    property alias text: label.text
    property bool spinner: false
    spacing: 8

    BusyIndicator {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: spinner
        running: spinner
        scale: 0.9
    }
    Label {
        id: label
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, 340)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Theme.secondary
        font.pixelSize: 12
    }
}
