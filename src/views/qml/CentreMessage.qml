pragma ComponentBehavior: Bound

import QtQuick
import ZelMenuBar

// A message in the middle of a tab, with a spinner while loading.
Column {
    id: message
    property string text
    property bool spinner: false
    spacing: 8

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: message.spinner
    }
    Text {
        id: label
        objectName: "message"
        textFormat: Text.RichText
        text: Theme.warningText(message.text)
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, 340)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 6
        elide: Text.ElideRight
        color: Theme.secondary
        font.pixelSize: 12
    }
}
