import QtQuick

Rectangle {
    required property string section
    width: ListView.view ? ListView.view.width : 0
    implicitHeight: title.implicitHeight + 10
    color: Theme.header
    // A separator to a screen reader, so that a row's place counts only the rows of its list.
    Accessible.role: Accessible.Separator
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
