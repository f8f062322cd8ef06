pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

// A batting or bowling table: a name column filling the width, then number columns as wide as
// the widest figure the game can give each (or its heading), in the figures' boldest weight.
// Each number column keeps a gap inside its width, so that neighbouring figures never run
// together and the figures take no more room than their columns.
Column {
    id: table
    property string heading
    // [title, widest figure, spoken title], in the order of each row's figures
    property var columns: []
    property alias model: lines.model
    readonly property alias count: lines.count
    property bool bowling: false
    // Batting: the runs stand out. Bowling: the wickets do.
    readonly property int keyFigure: bowling ? 3 : 0
    readonly property int gap: 4
    readonly property var widths: columns.map(column => Math.ceil(
        Math.max(headingMetrics.advanceWidth(column[0]), figureMetrics.advanceWidth(column[1])))
        + gap)
    readonly property real figuresWidth: widths.reduce((sum, width) => sum + width, 0)
    // The line the Tab chain stops at: the last one the keyboard was on.
    property int tabLine: 0
    width: parent ? parent.width : 0
    Accessible.role: Accessible.Table
    Accessible.name: heading

    FontMetrics {
        id: figureMetrics
        font.pixelSize: 11
        font.weight: Font.Bold
    }
    FontMetrics {
        id: headingMetrics
        font.pixelSize: 9
        font.weight: Font.DemiBold
    }

    RowLayout {
        width: parent.width
        spacing: 0
        Accessible.role: Accessible.Row
        Text {
            Accessible.ignored: true
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
                required property int index
                Layout.preferredWidth: table.widths[index]
                horizontalAlignment: Text.AlignRight
                bottomPadding: 3
                text: modelData[0]
                Accessible.role: Accessible.ColumnHeader
                Accessible.name: modelData[2]
                font.pixelSize: 9
                font.weight: Font.DemiBold
                color: Theme.secondary
            }
        }
    }

    Repeater {
        id: lines
        Item {
            id: line
            required property int index
            required property string name
            required property var figures
            required property bool strong
            required property bool dim
            required property string placeholder
            required property string spoken
            required property bool tookWickets
            width: table.width
            implicitHeight: cells.implicitHeight
            // One sentence a line, its figures named: the cells only draw it. The table is one
            // stop in the Tab chain; Up and Down go through the lines.
            Accessible.role: Accessible.Row
            Accessible.name: spoken
            activeFocusOnTab: index === Math.min(table.tabLine, lines.count - 1)
            onActiveFocusChanged: if (activeFocus) table.tabLine = index
            Keys.onUpPressed: lines.itemAt(index - 1)?.forceActiveFocus()
            Keys.onDownPressed: lines.itemAt(index + 1)?.forceActiveFocus()
            Rectangle {
                anchors.fill: parent
                color: Theme.divider
                visible: line.activeFocus
            }
            RowLayout {
                id: cells
                anchors.fill: parent
                spacing: 0
                Text {
                    Accessible.ignored: true
                    textFormat: Text.PlainText
                    Layout.fillWidth: true
                    topPadding: 2
                    bottomPadding: 2
                    text: line.name
                    elide: Text.ElideRight
                    font.pixelSize: 11
                    font.weight: line.strong ? Font.DemiBold : Font.Normal
                    color: (table.bowling ? !line.strong : line.dim) ? Theme.secondary : Theme.text
                }
                Text {
                    textFormat: Text.PlainText
                    visible: line.placeholder !== ""
                    Accessible.ignored: true
                    Layout.preferredWidth: table.figuresWidth
                    horizontalAlignment: Text.AlignRight
                    text: line.placeholder
                    font.pixelSize: 9
                    font.weight: Font.Medium
                    color: Theme.secondary
                }
                Repeater {
                    model: line.placeholder === "" ? table.columns.length : 0
                    Text {
                        textFormat: Text.PlainText
                        required property int index
                        readonly property bool key: index === table.keyFigure
                        Accessible.ignored: true
                        Layout.preferredWidth: table.widths[index]
                        leftPadding: table.gap
                        horizontalAlignment: Text.AlignRight
                        elide: Text.ElideRight
                        text: line.figures[index] ?? ""
                        font.pixelSize: 11
                        font.weight: !key ? Font.Normal
                                          : (!table.bowling && line.strong ? Font.Bold : Font.DemiBold)
                        color: key && (table.bowling ? line.tookWickets : !line.dim) ? Theme.text
                                                                                     : Theme.secondary
                    }
                }
            }
        }
    }
}
