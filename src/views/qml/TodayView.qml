pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// The popover: header, the Results / Today / Fixtures switch, and the selected tab.
Rectangle {
    id: root
    required property PopoverController controller
    signal closeRequested()
    width: 380
    height: 500
    color: Theme.background
    focus: true
    // Right-to-left languages (or -reverse) mirror the whole popover, arrow keys included.
    LayoutMirroring.enabled: root.controller.mirrored
    LayoutMirroring.childrenInherit: true

    Keys.onEscapePressed: root.closeRequested()
    Keys.onPressed: (event) => {
        const control = event.modifiers & Qt.ControlModifier
        if (event.key === Qt.Key_F5 || (event.key === Qt.Key_R && control)) {
            root.controller.refresh()
            event.accepted = true
        } else if (event.key === Qt.Key_Comma && control) {
            root.controller.settingsOpen = true
            event.accepted = true
        }
    }
    function stepTab(step: int) {
        const next = controller.activeTab + (LayoutMirroring.enabled ? -step : step)
        controller.activeTab = Math.max(Popover.Tab.Results, Math.min(Popover.Tab.Fixtures, next))
    }
    Keys.onLeftPressed: stepTab(-1)
    Keys.onRightPressed: stepTab(1)
    Keys.onReturnPressed: (event) => event.accepted = controller.retryIfFailed()
    Keys.onEnterPressed: (event) => event.accepted = controller.retryIfFailed()

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 14
            Layout.rightMargin: 14
            Layout.topMargin: 10
            Layout.bottomMargin: 10
            Column {
                spacing: 1
                Text {
                    textFormat: Text.PlainText
                    text: root.controller.title
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                    font.pixelSize: 13
                    font.weight: Font.DemiBold
                    color: Theme.text
                }
                Text {
                    textFormat: Text.PlainText
                    text: root.controller.todayLabel
                    font.pixelSize: 10
                    color: Theme.secondary
                }
            }
            Item { Layout.fillWidth: true }
            Text {
                textFormat: Text.PlainText
                visible: text !== ""
                objectName: "updatedLabel"
                text: root.controller.updatedLabel
                // The reason offline is more than a hover tip: a screen reader reads it too.
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.description: root.controller.offlineReason
                font.pixelSize: 10
                color: Theme.secondary
                HoverTip { text: root.controller.offlineReason }
            }
            PushButton {
                objectName: "refreshButton"
                flat: true
                symbol: "arrow.clockwise"
                text: qsTr("Refresh")
                onClicked: root.controller.refresh()
                HoverTip { text: qsTr("Refresh") }
            }
            PushButton {
                objectName: "settingsButton"
                visible: root.controller.settings !== null
                flat: true
                symbol: "gearshape"
                text: qsTr("Settings")
                onClicked: root.controller.settingsOpen = !root.controller.settingsOpen
                HoverTip { text: qsTr("Settings") }
            }
        }

        Divider { Layout.fillWidth: true }

        Loader {
            objectName: "settingsPage"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: active
            active: root.controller.settingsOpen
            // Given by URL with its properties, so that the page is built only when opened.
            Component.onCompleted: setSource("SettingsPage.qml", {settings: root.controller.settings})
            onLoaded: {
                const page = item as SettingsPage
                page.backRequested.connect(() => root.controller.settingsOpen = false)
                page.forceActiveFocus()
            }
            onActiveChanged: if (!active) root.forceActiveFocus()
        }

        SegmentedBar {
            visible: !root.controller.settingsOpen
            objectName: "tabBar"
            Layout.fillWidth: true
            Layout.leftMargin: 14
            Layout.rightMargin: 14
            Layout.topMargin: 8
            Layout.bottomMargin: 8
            labels: root.controller.tabLabels
            currentIndex: root.controller.activeTab
            onActivated: index => root.controller.activeTab = index
        }

        Divider { Layout.fillWidth: true; visible: !root.controller.settingsOpen }

        StackLayout {
            visible: !root.controller.settingsOpen
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: root.controller.activeTab

            TabContent {
                objectName: "resultsTab"
                controller: root.controller
                tab: root.controller.resultsTab
                sectioned: true
                delegate: ResultRow {
                    controller: root.controller
                    rows: root.controller.resultsTab.model
                }
            }
            TabContent {
                objectName: "todayTab"
                controller: root.controller
                tab: root.controller.todayTab
                delegate: MatchRow {
                    controller: root.controller
                    rows: root.controller.todayTab.model
                }
            }
            TabContent {
                objectName: "fixturesTab"
                controller: root.controller
                tab: root.controller.fixturesTab
                sectioned: true
                delegate: FixtureRow {}
            }
        }
    }

    // The thin edge a desktop popup has, so that the popover stands out from the windows behind
    // it on a light desktop as on a dark one.
    Rectangle {
        anchors.fill: parent
        z: 100
        color: "transparent"
        border.color: Theme.edge
    }
}
