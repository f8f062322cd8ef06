pragma ComponentBehavior: Bound

import QtQuick
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

    readonly property bool windowActive: Window.active
    onWindowActiveChanged: if (windowActive) announcer.say(controller.headline())
    // Arrows away from the tab bar switch tabs too: the tab that shows is said, and a row of
    // the tab that went gives the keyboard to the tab bar.
    Connections {
        target: root.controller
        function onActiveTabChanged() {
            if (!tabBar.holdsFocus)
                tabSwitch.restart()
        }
    }
    // Once the tabs have shown and hidden.
    Timer {
        id: tabSwitch
        interval: 0
        onTriggered: root.tabSwitched()
    }
    function tabSwitched() {
        const focused = Window.activeFocusItem
        if (focused && !focused.visible)
            tabBar.focusSelected()
        else
            announcer.say(controller.tabLabels[controller.activeTab])
    }
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

    Column {
        id: top
        width: parent.width

        Item {
            width: parent.width
            height: Math.max(titles.implicitHeight, actions.implicitHeight) + 20
            Column {
                id: titles
                anchors.left: parent.left
                anchors.leftMargin: 14
                anchors.verticalCenter: parent.verticalCenter
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
            Row {
                id: actions
                anchors.right: parent.right
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                spacing: 5
                Text {
                    textFormat: Text.PlainText
                    anchors.verticalCenter: parent.verticalCenter
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
        }

        Divider {}

        Item {
            visible: !root.controller.settingsOpen
            width: parent.width
            height: tabBar.implicitHeight + 16
            SegmentedBar {
                id: tabBar
                objectName: "tabBar"
                x: 14
                y: 8
                width: parent.width - 28
                labels: root.controller.tabLabels
                currentIndex: root.controller.activeTab
                onActivated: index => root.controller.activeTab = index
            }
        }

        Divider { visible: !root.controller.settingsOpen }
    }

    Loader {
        objectName: "settingsPage"
        anchors { top: top.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
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

    // A tab is made the first time it shows, so that a day spent on one tab never makes the others.
    Item {
        visible: !root.controller.settingsOpen
        anchors { top: top.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }

        Loader {
            anchors.fill: parent
            active: false
            visible: root.controller.activeTab === Popover.Tab.Results
            onVisibleChanged: if (visible) active = true
            Component.onCompleted: {
                setSource("TabContent.qml", {objectName: "resultsTab", controller: root.controller,
                                             tab: root.controller.resultsTab, listFile: "ResultList.qml"})
                if (visible)
                    active = true
            }
        }
        Loader {
            anchors.fill: parent
            active: false
            visible: root.controller.activeTab === Popover.Tab.Today
            onVisibleChanged: if (visible) active = true
            Component.onCompleted: {
                setSource("TabContent.qml", {objectName: "todayTab", controller: root.controller,
                                             tab: root.controller.todayTab, listFile: "TodayList.qml"})
                if (visible)
                    active = true
            }
        }
        Loader {
            anchors.fill: parent
            active: false
            visible: root.controller.activeTab === Popover.Tab.Fixtures
            onVisibleChanged: if (visible) active = true
            Component.onCompleted: {
                setSource("TabContent.qml", {objectName: "fixturesTab", controller: root.controller,
                                             tab: root.controller.fixturesTab, listFile: "FixtureList.qml"})
                if (visible)
                    active = true
            }
        }
    }

    // The popover's voice: what it says shows as a notification, which a screen reader speaks
    // where the focus is. Coming up, it says the tab, the title and how fresh the data is.
    Item {
        id: announcer
        objectName: "announcer"
        width: 1
        height: 1
        visible: false
        Accessible.role: Accessible.Notification
        function say(text: string) {
            visible = false
            Accessible.name = text
            visible = text !== ""
        }
        Connections {
            target: root.controller
            function onAnnouncement(text: string) { announcer.say(text) }
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
