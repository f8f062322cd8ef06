import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// Innings switch, total line, batting and bowling tables of one match.
Column {
    id: view
    required property ScorecardModel card
    signal inningsChosen(int innings)
    width: parent ? parent.width : 0
    spacing: 6

    Divider {}

    SegmentedBar {
        objectName: "inningsBar"
        width: parent.width
        fontSize: 10
        labels: view.card.inningsLabels
        currentIndex: view.card.selectedInnings
        onActivated: index => view.inningsChosen(index)
    }

    Row {
        visible: view.card.yetToBat
        topPadding: 6
        spacing: 8
        CricketBadge {
            width: 28
            height: 28
            url: view.card.yetToBatLogo
            placeholderColor: Theme.placeholder
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            Text {
                textFormat: Text.PlainText
                text: view.card.yetToBatName
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Theme.text
            }
            Text { textFormat: Text.PlainText; text: qsTr("Yet to bat"); font.pixelSize: 10; color: Theme.secondary }
        }
    }

    RowLayout {
        visible: !view.card.yetToBat && view.card.score !== ""
        width: parent.width
        Item { Layout.fillWidth: true }
        Text {
            textFormat: Text.PlainText
            text: view.card.score
            font.family: Theme.mono
            font.pixelSize: 12
            font.bold: true
            color: Theme.text
        }
        Text {
            textFormat: Text.PlainText
            visible: view.card.overs !== ""
            text: "(" + view.card.overs + ")"
            font.pixelSize: 10
            color: Theme.secondary
        }
    }

    ScoreTable {
        visible: !view.card.yetToBat && count > 0
        heading: qsTr("BATTING")
        columns: [[qsTr("R"), "8888", qsTr("Runs")], [qsTr("B"), "8888", qsTr("Balls")],
                  [qsTr("4s"), "888", qsTr("Fours")], [qsTr("6s"), "888", qsTr("Sixes")],
                  [qsTr("SR"), "8888", qsTr("Strike rate")]]
        model: view.card.batting
    }

    ScoreTable {
        visible: !view.card.yetToBat && count > 0
        topPadding: 8
        heading: qsTr("BOWLING")
        columns: [[qsTr("O"), "88.8", qsTr("Overs")], [qsTr("M"), "88", qsTr("Maidens")],
                  [qsTr("R"), "888", qsTr("Runs")], [qsTr("W"), "88", qsTr("Wickets")],
                  [qsTr("Econ"), "88.88", qsTr("Economy")]]
        model: view.card.bowling
        bowling: true
    }
}
