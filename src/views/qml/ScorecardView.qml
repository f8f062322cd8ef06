import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// Innings switch, total line, batting and bowling tables of one match.
Column {
    id: card
    required property PopoverController controller
    required property var matchId
    property int selectedInnings: controller.initialInnings(matchId)
    readonly property var view: controller.inningsView(matchId, selectedInnings, controller.revision)
    width: parent ? parent.width : 0
    spacing: 6

    Divider {}

    SegmentedBar {
        width: parent.width
        fontSize: 10
        labels: [card.view.tab1 || "1st", card.view.tab2 || "2nd"]
        currentIndex: card.selectedInnings
        onActivated: index => card.selectedInnings = index
    }

    Row {
        visible: card.view.yetToBat !== undefined
        topPadding: 6
        spacing: 8
        CricketBadge {
            width: 28
            height: 28
            url: card.view.yetToBat ? card.view.yetToBat.logo : ""
            placeholderColor: Theme.placeholder
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            Text {
                textFormat: Text.PlainText
                text: card.view.yetToBat ? card.view.yetToBat.name : ""
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Theme.text
            }
            Text { textFormat: Text.PlainText; text: "Yet to bat"; font.pixelSize: 10; color: Theme.secondary }
        }
    }

    RowLayout {
        visible: card.view.yetToBat === undefined && (card.view.score || "") !== ""
        width: parent.width
        Item { Layout.fillWidth: true }
        Text {
            textFormat: Text.PlainText
            text: card.view.score || ""
            font.family: Theme.mono
            font.pixelSize: 12
            font.bold: true
            color: Theme.text
        }
        Text {
            textFormat: Text.PlainText
            visible: (card.view.overs || "") !== ""
            text: "(" + (card.view.overs || "") + ")"
            font.pixelSize: 10
            color: Theme.secondary
        }
    }

    ScoreTable {
        visible: card.view.yetToBat === undefined && rows.length > 0
        heading: "BATTING"
        columns: [["R", 26, "runs"], ["B", 24, "balls"], ["4s", 22, "fours"], ["6s", 22, "sixes"], ["SR", 36, "strikeRate"]]
        rows: card.view.batting || []
    }

    ScoreTable {
        visible: card.view.yetToBat === undefined && rows.length > 0
        topPadding: 8
        heading: "BOWLING"
        columns: [["O", 28, "overs"], ["M", 22, "maidens"], ["R", 26, "runs"], ["W", 22, "wickets"], ["Econ", 34, "economy"]]
        rows: card.view.bowling || []
        bowling: true
    }
}
