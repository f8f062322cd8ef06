import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// A finished match: scores in home/away order; every row opens its detail.
Column {
    id: row
    required property PopoverController controller
    required property string matchKey
    required property string homeCode
    required property string awayCode
    required property url homeLogo
    required property url awayLogo
    required property bool homeFavourite
    required property bool awayFavourite
    required property string scoresText
    required property string matchOrder
    required property string comments
    required property string tossText
    required property string groundAndCity
    // The row's state lives in the list, which keeps it while the delegate is scrolled away.
    required property MatchListModel rows
    required property int index
    required property bool expanded
    required property int chosenInnings
    width: ListView.view ? ListView.view.width : 0
    required property string spokenText
    // What a screen reader says: the match in a sentence, and whether its detail is open.
    Accessible.role: Accessible.ListItem
    Accessible.name: spokenText
    function openness(): string {
        return expanded ? qsTr("Expanded") : qsTr("Collapsed")
    }
    Accessible.description: openness()
    Accessible.onPressAction: activate()
    activeFocusOnTab: true

    function activate() {
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
        Rectangle { anchors.fill: parent; color: Theme.divider; visible: row.activeFocus }
        RowLayout {
            id: line
            anchors.fill: parent
            anchors.leftMargin: 14
            anchors.rightMargin: 14
            spacing: 0
            TeamSide { logo: row.homeLogo; code: row.homeCode; favourite: row.homeFavourite; codeWidth: 34 }
            Item { Layout.preferredWidth: 4 }
            // Takes all the room between the sides, the same in every row, so columns line up.
            Column {
                Layout.fillWidth: true
                Layout.minimumWidth: 110
                spacing: 1
                FitText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    size: 11
                    text: row.scoresText
                    font.family: Theme.mono
                    font.weight: Font.DemiBold
                    color: Theme.text
                }
                FitText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    size: 9
                    text: row.matchOrder
                    color: Theme.secondary
                }
            }
            Item { Layout.preferredWidth: 4 }
            TeamSide { logo: row.awayLogo; code: row.awayCode; favourite: row.awayFavourite; codeWidth: 34; trailing: true }
            Item {
                Layout.preferredWidth: 14
                Layout.preferredHeight: 9
                Chevron { anchors.right: parent.right; open: row.expanded }
            }
        }
    }

    Expander {
        open: row.expanded
        Column {
            width: parent.width
            leftPadding: 14
            rightPadding: 14
            bottomPadding: 10
            spacing: 5
            DetailLine {
                visible: row.comments !== ""
                maximumWidth: parent.width - 28
                icon: "trophy.fill"
                tint: Theme.yellow
                text: row.comments
                strong: true
            }
            DetailLine {
                visible: row.tossText !== ""
                maximumWidth: parent.width - 28
                icon: "arrow.2.circlepath"
                text: row.tossText
            }
            DetailLine { maximumWidth: parent.width - 28; icon: "mappin"; text: row.groundAndCity }
            ScorecardContent {
                width: parent.width - 28
                controller: row.controller
                matchKey: row.matchKey
                chosenInnings: row.chosenInnings
                onInningsChosen: innings => row.rows.chooseInnings(row.index, innings)
            }
        }
    }

    Divider { leadingInset: 14 }
}
