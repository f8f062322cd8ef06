import QtQuick
import ZelMenuBar

// One tab: a loading message, an error with "Retry", an empty message, or the list.
Item {
    id: content
    required property PopoverController controller
    required property PopoverTab tab
    property alias delegate: list.delegate
    property bool sectioned: false
    readonly property int shown: tab.content
    readonly property string message: tab.message
    readonly property alias list: list

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

    ListView {
        id: list
        // A tab out of sight holds no rows: they are made again, where they were, when it shows.
        property real keptY: 0
        anchors.fill: parent
        model: content.visible ? content.tab.model : null
        onModelChanged: if (model) contentY = keptY
        onContentYChanged: if (content.visible) keptY = contentY
        visible: content.shown === Popover.Content.List
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        section.property: content.sectioned ? "sectionTitle" : ""
        section.criteria: ViewSection.FullString
        section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
        section.delegate: SectionHeader {}
    }

    ScrollIndicator { flickable: list }
}
