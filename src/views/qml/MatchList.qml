import QtQuick
import ZelMenuBar

// A tab's list of matches, with the bar that shows where it is.
Item {
    id: matchList
    required property PopoverController controller
    required property PopoverTab tab
    property bool sectioned: false
    property alias delegate: view.delegate
    readonly property alias view: view

    ListView {
        id: view
        // A tab out of sight holds no rows: they are made again, where they were, when it shows.
        property real keptY: 0
        anchors.fill: parent
        // Rows count their place among their own list, not among the whole popover's parts.
        Accessible.role: Accessible.List
        Accessible.name: matchList.tab.label
        model: visible ? matchList.tab.model : null
        onModelChanged: if (model) contentY = keptY
        onContentYChanged: if (visible) keptY = contentY
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        section.property: matchList.sectioned ? "sectionTitle" : ""
        section.criteria: ViewSection.FullString
        section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
        section.delegate: SectionHeader {}
    }

    ScrollIndicator { flickable: view }
}
