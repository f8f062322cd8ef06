import QtQuick
import QtQuick.Controls
import ZelMenuBar

// A row's scorecard: loading, its error, or the card itself.
Column {
    id: holder
    required property PopoverController controller
    required property var matchId
    readonly property var content: controller.scorecardContent(matchId, controller.revision)
    topPadding: content.state === "none" ? 0 : 4
    width: parent ? parent.width : 0

    Row {
        visible: holder.content.state === "loading"
        spacing: 4
        BusyIndicator { running: parent.visible; width: 18; height: 18 }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: "Loading scorecard…"
            color: Theme.secondary
            font.pixelSize: 10
        }
    }
    Label {
        visible: holder.content.state === "error"
        text: holder.content.error || ""
        color: Theme.secondary
        font.pixelSize: 10
    }
    Loader {
        width: parent.width
        active: holder.content.state === "card"
        sourceComponent: ScorecardView {
            controller: holder.controller
            matchId: holder.matchId
        }
    }
}
