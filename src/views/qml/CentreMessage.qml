import QtQuick

Column {
    property alias text: label.text
    property bool spinner: false
    spacing: 8

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: spinner
    }
    Text {
        textFormat: Text.PlainText
        id: label
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
