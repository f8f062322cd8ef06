import QtQuick
import ZelMenuBar

// One tab: a loading message, an error with "Retry", an empty message, or the list.
Item {
    id: content
    required property PopoverController controller
    required property int tab
    property alias model: list.model
    property alias delegate: list.delegate
    property bool sectioned: false
    readonly property int shown: controller.content(tab, controller.revision)
    readonly property string message: controller.message(tab, controller.revision)
    readonly property alias list: list

    CentreMessage {
        anchors.centerIn: parent
        visible: content.shown === PopoverController.Loading || content.shown === PopoverController.Empty
        spinner: content.shown === PopoverController.Loading
        text: content.message
    }

    Column {
        anchors.centerIn: parent
        visible: content.shown === PopoverController.Error
        spacing: 12
        CentreMessage {
            anchors.horizontalCenter: parent.horizontalCenter
            text: content.message
        }
        PushButton {
            objectName: "retryButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Retry"
            onClicked: content.controller.retry(content.tab)
        }
    }

    ListView {
        id: list
        anchors.fill: parent
        visible: content.shown === PopoverController.List
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
