import QtQuick
import ZelMenuBar

// One tab: a loading message, an error with "Retry", an empty message, or the list.
Item {
    id: content
    required property PopoverController controller
    required property PopoverTab tab
    // The list's file, given the controller and the tab.
    required property string listFile
    readonly property int shown: tab.content
    readonly property string message: tab.message
    readonly property ListView list: lister.item ? (lister.item as MatchList).view : null

    CentreMessage {
        anchors.centerIn: parent
        visible: content.shown === Popover.Content.Loading || content.shown === Popover.Content.Empty
        spinner: content.shown === Popover.Content.Loading
        text: content.message
    }

    Column {
        anchors.centerIn: parent
        visible: content.shown === Popover.Content.Error
        spacing: 12
        CentreMessage {
            anchors.horizontalCenter: parent.horizontalCenter
            text: content.message
        }
        PushButton {
            objectName: "retryButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Retry")
            onClicked: content.controller.retry(content.tab.tab)
        }
    }

    // Made the first time the tab shows rows, so that a quiet day never loads a list or its rows.
    Loader {
        id: lister
        anchors.fill: parent
        active: false
        visible: content.shown === Popover.Content.List
        Component.onCompleted: setSource(content.listFile,
                                         {controller: content.controller, tab: content.tab})
    }
    readonly property bool listing: visible && shown === Popover.Content.List
    onListingChanged: if (listing) lister.active = true
    Component.onCompleted: if (listing) lister.active = true
}
