import QtQuick

Rectangle {
    required property string section
    width: ListView.view ? ListView.view.width : 0
    implicitHeight: title.implicitHeight + 10
    color: Theme.header
    Accessible.role: Accessible.Heading
    Accessible.name: section
    Accessible.ignored: section === ""

    Text {
        textFormat: Text.PlainText
        id: title
        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: parent.section
        color: Theme.secondary
        font.pixelSize: 10
        font.weight: Font.DemiBold
    }
}
