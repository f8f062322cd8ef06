import QtQuick
import ZelMenuBar

// A badge and a team's short code; the badge goes on the outer side.
Row {
    id: side
    property url logo
    property string code
    property bool trailing: false
    property real codeWidth: 36
    property real badgeSize: 22
    property bool favourite: false
    spacing: 5
    layoutDirection: trailing ? Qt.RightToLeft : Qt.LeftToRight

    CricketBadge {
        width: parent.badgeSize
        height: parent.badgeSize
        anchors.verticalCenter: parent.verticalCenter
        url: parent.logo
        placeholderColor: Theme.placeholder
        Accessible.role: Accessible.Graphic
        Accessible.name: qsTr("%1 logo").arg(side.code)
        FavouriteMark {
            visible: side.favourite
            anchors.top: parent.top
            anchors.topMargin: -4
            x: side.trailing ? parent.width - width + 3 : -3
        }
    }
    Text {
        textFormat: Text.PlainText
        width: parent.codeWidth
        anchors.verticalCenter: parent.verticalCenter
        text: parent.code
        horizontalAlignment: parent.trailing ? Text.AlignRight : Text.AlignLeft
        elide: Text.ElideRight
        font.pixelSize: 13
        font.weight: Font.Medium
        color: Theme.text
    }
}
