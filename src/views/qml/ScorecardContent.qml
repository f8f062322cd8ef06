import QtQuick
import ZelMenuBar

// A row's scorecard: loading, its error, or the card itself.
Column {
    id: holder
    required property PopoverController controller
    required property string matchKey
    required property int chosenInnings
    signal inningsChosen(int innings)
    readonly property ScorecardModel card: ScorecardModel {
        controller: holder.controller
        matchKey: holder.matchKey
        chosenInnings: holder.chosenInnings
    }
    topPadding: card.state === Popover.Card.None ? 0 : 4
    width: parent ? parent.width : 0

    // Made only while loading: a spinner in every row, shown or not, would be news to a screen
    // reader each time a list fills.
    Loader {
        active: holder.card.state === Popover.Card.Loading
        sourceComponent: Row {
            spacing: 4
            Spinner { width: 14; height: 14; anchors.verticalCenter: parent.verticalCenter }
            Text {
                textFormat: Text.PlainText
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Loading scorecard…")
                color: Theme.secondary
                font.pixelSize: 10
            }
        }
    }
    Text {
        textFormat: Text.RichText
        visible: holder.card.state === Popover.Card.Error
        width: parent.width
        wrapMode: Text.Wrap
        text: Theme.warningText(holder.card.error)
        color: Theme.secondary
        font.pixelSize: 10
    }
    Loader {
        width: parent.width
        active: holder.card.state === Popover.Card.Ready
        // Given by URL with its properties, so that the card is built only once it is ready.
        Component.onCompleted: setSource("ScorecardView.qml", {card: holder.card})
        onLoaded: (item as ScorecardView).inningsChosen.connect(holder.inningsChosen)
    }
}
