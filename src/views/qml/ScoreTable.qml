import QtQuick
import QtQuick.Layouts

// A batting or bowling table: a name column filling the width, then fixed number columns.
// Each number column gets a gap before it, so that neighbouring figures never run together.
Column {
    id: table
    property string heading
    property var columns: [] // [title, width, key]
    property var rows: []
    property bool bowling: false
    readonly property int gap: 4
    width: parent ? parent.width : 0

    RowLayout {
        width: parent.width
        spacing: 0
        Text {
            textFormat: Text.PlainText
            Layout.fillWidth: true
            bottomPadding: 3
            text: table.heading
            font.pixelSize: 9
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        Repeater {
            model: table.columns
            Text {
                textFormat: Text.PlainText
                required property var modelData
                Layout.preferredWidth: modelData[1] + table.gap
                horizontalAlignment: Text.AlignRight
                bottomPadding: 3
                text: modelData[0]
                font.pixelSize: 9
                font.weight: Font.DemiBold
                color: Theme.secondary
            }
        }
    }

    Repeater {
        model: table.rows
        RowLayout {
            id: line
            required property var modelData
            readonly property bool strong: table.bowling ? modelData.current : modelData.emphasised
            readonly property bool dim: !table.bowling && modelData.dimmed
            width: table.width
            spacing: 0
            Text {
                textFormat: Text.PlainText
                Layout.fillWidth: true
                topPadding: 2
                bottomPadding: 2
                text: line.modelData.name
                elide: Text.ElideRight
                font.pixelSize: 11
                font.weight: line.strong ? Font.DemiBold : Font.Normal
                color: (table.bowling ? !line.strong : line.dim) ? Theme.secondary : Theme.text
            }
            Text {
                textFormat: Text.PlainText
                visible: !table.bowling && line.modelData.placeholder !== ""
                Layout.preferredWidth: 130 + table.columns.length * table.gap
                horizontalAlignment: Text.AlignRight
                text: line.modelData.placeholder || ""
                font.pixelSize: 9
                font.weight: Font.Medium
                color: Theme.secondary
            }
            Repeater {
                model: table.bowling || line.modelData.placeholder === "" ? table.columns : []
                Text {
                    textFormat: Text.PlainText
                    required property var modelData
                    required property int index
                    readonly property bool first: index === 0
                    Layout.preferredWidth: modelData[1] + table.gap
                    leftPadding: table.gap
                    horizontalAlignment: Text.AlignRight
                    elide: Text.ElideRight
                    text: line.modelData[modelData[2]]
                    font.pixelSize: 11
                    font.weight: table.bowling
                                 ? (modelData[2] === "wickets" ? Font.DemiBold : Font.Normal)
                                 : (first ? (line.strong ? Font.Bold : Font.DemiBold) : Font.Normal)
                    color: table.bowling
                           ? (modelData[2] === "wickets" && line.modelData.tookWickets ? Theme.text : Theme.secondary)
                           : (first && !line.dim ? Theme.text : Theme.secondary)
                }
            }
        }
    }
}
