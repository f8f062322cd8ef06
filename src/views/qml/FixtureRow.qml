import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// An upcoming match: its order, both teams by name, the start time and the venue.
Column {
    id: row
    required property string matchOrder
    required property string homeName
    required property string awayName
    required property url homeLogo
    required property url awayLogo
    required property bool homeFavourite
    required property bool awayFavourite
    required property string displayTime
    required property string venueText
    required property string spokenText
    Accessible.role: Accessible.ListItem
    Accessible.name: spokenText
    // Nothing opens, but the keyboard reaches it, and with it a screen reader.
    activeFocusOnTab: true
    width: ListView.view ? ListView.view.width : 0

    Rectangle {
        width: parent.width
        height: entry.implicitHeight
        color: row.activeFocus ? Theme.divider : "transparent"
        Column {
            id: entry
            width: parent.width
            leftPadding: 14
            rightPadding: 14
            topPadding: 10
            bottomPadding: 10
            spacing: 6
            Text { textFormat: Text.PlainText; text: row.matchOrder; font.pixelSize: 10; color: Theme.secondary }
            RowLayout {
                width: parent.width - 28
                spacing: 0
                CricketBadge {
                    Layout.preferredWidth: 26; Layout.preferredHeight: 26; url: row.homeLogo; placeholderColor: Theme.placeholder
                    FavouriteMark { visible: row.homeFavourite; x: -3; y: -4 }
                }
                FitText {
                    Layout.leftMargin: 6
                    Layout.fillWidth: true
                    Layout.maximumWidth: implicitWidth
                    minimumScale: 0.85
                    text: row.homeName
                    font.weight: Font.Medium
                    color: Theme.text
                }
                Item { Layout.fillWidth: true; Layout.minimumWidth: 6; Layout.preferredWidth: 6 }
                Text { textFormat: Text.PlainText; text: qsTr("vs"); font.pixelSize: 11; color: Theme.secondary }
                Item { Layout.fillWidth: true; Layout.minimumWidth: 6; Layout.preferredWidth: 6 }
                FitText {
                    Layout.rightMargin: 6
                    Layout.fillWidth: true
                    Layout.maximumWidth: implicitWidth
                    minimumScale: 0.85
                    horizontalAlignment: Text.AlignRight
                    text: row.awayName
                    font.weight: Font.Medium
                    color: Theme.text
                }
                CricketBadge {
                    Layout.preferredWidth: 26; Layout.preferredHeight: 26; url: row.awayLogo; placeholderColor: Theme.placeholder
                    FavouriteMark { visible: row.awayFavourite; x: parent.width - width + 3; y: -4 }
                }
            }
            Row {
                id: details
                spacing: 14
                DetailLine { id: time; icon: "clock"; text: row.displayTime }
                DetailLine {
                    icon: "mappin"
                    text: row.venueText
                    maximumWidth: row.width - 28 - time.width - details.spacing
                }
            }
        }
    }
    Divider { leadingInset: 14 }
}
