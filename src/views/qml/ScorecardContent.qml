import QtQuick
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
        Spinner { width: 14; height: 14; anchors.verticalCenter: parent.verticalCenter }
        Text {
            textFormat: Text.PlainText
            anchors.verticalCenter: parent.verticalCenter
            text: "Loading scorecard…"
            color: Theme.secondary
            font.pixelSize: 10
        }
    }
    Text {
        textFormat: Text.RichText
        visible: holder.content.state === "error"
        width: parent.width
        wrapMode: Text.Wrap
        text: Theme.warningText(holder.content.error || "")
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
