import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// A today row: status, both sides, the score or start time; finished rows open their detail.
Column {
    id: row
    required property PopoverController controller
    required property string matchKey
    required property string status
    required property string statusIcon
    required property string centreText
    required property string centreSubText
    required property bool isLive
    required property bool opensOnTap
    required property string homeCode
    required property string awayCode
    required property url homeLogo
    required property url awayLogo
    required property bool homeFavourite
    required property bool awayFavourite
    required property string comments
    // The row's state lives in the list, which keeps it while the delegate is scrolled away.
    required property MatchListModel rows
    required property int index
    required property bool expanded
    required property int chosenInnings
    readonly property bool finished: status === "finished"
    width: ListView.view ? ListView.view.width : 0
    required property string spokenText
    // What a screen reader says: the match in a sentence, and whether its detail is open.
    Accessible.role: Accessible.ListItem
    Accessible.name: spokenText
    // A live row opens by itself: it says so as a row the user opened would.
    function openness(): string {
        return !opensOnTap && !isLive && !expanded ? ""
                                                   : expanded ? qsTr("Expanded") : qsTr("Collapsed")
    }
    Accessible.description: openness()
    Accessible.onPressAction: activate()
    activeFocusOnTab: true

    function activate() {
        if (opensOnTap)
            rows.setExpanded(index, !expanded)
    }
    Keys.onSpacePressed: activate()
    Keys.onReturnPressed: activate()
    onExpandedChanged: {
        if (expanded)
            controller.scorecardWanted(matchKey)
        // Whoever opened or closed it, a screen reader hears it: the row it has, or else which.
        // A row made open, as a tab shows, is not news.
        if (made && openness() !== "")
            controller.announce(activeFocus ? openness() : spokenText + ", " + openness())
    }
    property bool made: false
    Component.onCompleted: {
        made = true
        if (expanded)
            controller.scorecardWanted(matchKey)
    }

    Item {
        objectName: "mainLine"
        width: parent.width
        height: line.implicitHeight + 18

        TapHandler { onTapped: row.activate() }
        Rectangle {
            anchors.fill: parent
            color: Theme.divider
            visible: row.activeFocus
        }
        RowLayout {
            id: line
            anchors.fill: parent
            anchors.leftMargin: 14
            anchors.rightMargin: 14
            spacing: 0
            Text {
                textFormat: Text.PlainText
                Layout.preferredWidth: 22
                text: row.statusIcon
                Accessible.ignored: true // the row says its state in words
                font.family: Theme.emoji
                font.pixelSize: 11
                color: Theme.text
            }
            TeamSide { logo: row.homeLogo; code: row.homeCode; favourite: row.homeFavourite }
            Item { Layout.preferredWidth: 4 }
            // Takes all the room between the sides, the same in every row, so columns line up.
            Column {
                Layout.fillWidth: true
                Layout.minimumWidth: 100
                spacing: 2
                FitText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    size: 12
                    text: row.centreText
                    font.family: Theme.mono
                    font.weight: Font.DemiBold
                    color: row.isLive ? Theme.red : Theme.text
                }
                Text {
                    objectName: "centreSubText"
                    textFormat: Text.PlainText
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    visible: text !== ""
                    wrapMode: Text.Wrap
                    text: row.centreSubText
                    font.pixelSize: 9
                    color: Theme.secondary
                }
            }
            Item { Layout.preferredWidth: 4 }
            TeamSide { logo: row.awayLogo; code: row.awayCode; favourite: row.awayFavourite; trailing: true }
            Item {
                Layout.preferredWidth: 20
                Layout.preferredHeight: 9
                Chevron {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    visible: row.finished
                    open: row.expanded
                }
            }
        }
    }

    Expander {
        open: row.expanded
        Column {
            width: parent.width
            leftPadding: 22
            rightPadding: 14
            bottomPadding: 10
            spacing: 5
            Row {
                spacing: 5
                SymbolIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 10; height: 10
                    name: row.finished ? "trophy" : "circle.fill"
                    color: row.finished ? Theme.yellow : Theme.red
                }
                Text {
                    objectName: "comments"
                    textFormat: Text.PlainText
                    width: Math.min(implicitWidth, row.width - 51)
                    wrapMode: Text.Wrap
                    text: row.comments
                    font.pixelSize: 10
                    color: Theme.text
                }
            }
            ScorecardContent {
                width: parent.width - 36
                controller: row.controller
                matchKey: row.matchKey
                chosenInnings: row.chosenInnings
                onInningsChosen: innings => row.rows.chooseInnings(row.index, innings)
            }
        }
    }

    Divider { leadingInset: 14 }
}
