pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import ZelMenuBar

// The settings page that takes the popover's body: the favourite team, the alerts, and
// starting at login. Up and Down move through the teams; Space or Return chooses one.
Item {
    id: page
    required property SettingsController settings
    signal backRequested()

    Keys.onEscapePressed: page.backRequested()

    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        anchors.topMargin: 8
        anchors.bottomMargin: 10
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            PushButton {
                objectName: "backButton"
                text: qsTr("Back")
                onClicked: page.backRequested()
            }
            Text {
                Layout.fillWidth: true
                textFormat: Text.PlainText
                text: qsTr("Settings")
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Theme.text
            }
            Item { Layout.preferredWidth: 50 }
        }

        Text {
            textFormat: Text.PlainText
            text: qsTr("FAVOURITE TEAM")
            font.pixelSize: 10
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        ListView {
            id: teams
            objectName: "teamList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightMoveDuration: 0
            model: page.settings.teams
            currentIndex: 0
            delegate: Rectangle {
                id: team
                required property int index
                required property string teamID
                required property string name
                required property string code
                required property url logo
                required property bool chosen
                width: ListView.view.width
                height: 32
                radius: 5
                color: ListView.isCurrentItem && ListView.view.activeFocus ? Theme.placeholder
                                                                           : "transparent"
                Accessible.role: Accessible.RadioButton
                Accessible.name: name
                Accessible.checked: chosen
                // The list hands its focus to the current row, so the row takes the keys.
                Keys.onSpacePressed: page.settings.chooseTeam(teamID)
                Keys.onReturnPressed: page.settings.chooseTeam(teamID)
                Keys.onEnterPressed: page.settings.chooseTeam(teamID)
                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 6
                    anchors.rightMargin: 6
                    spacing: 8
                    CricketBadge {
                        Layout.preferredWidth: 22
                        Layout.preferredHeight: 22
                        visible: team.teamID !== ""
                        url: team.logo
                        placeholderColor: Theme.placeholder
                    }
                    Text {
                        Layout.fillWidth: true
                        textFormat: Text.PlainText
                        text: team.code !== "" ? team.name + "  \u00B7  " + team.code : team.name
                        elide: Text.ElideRight
                        font.pixelSize: 13
                        color: team.teamID !== "" ? Theme.text : Theme.secondary
                    }
                    Text {
                        textFormat: Text.PlainText
                        visible: team.chosen
                        text: "\u2713"
                        font.pixelSize: 14
                        color: Theme.palette.highlight
                    }
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: {
                        team.ListView.view.currentIndex = team.index
                        page.settings.chooseTeam(team.teamID)
                    }
                }
            }
        }

        Text {
            Layout.topMargin: 4
            textFormat: Text.PlainText
            objectName: "alertsCaption"
            text: page.settings.favouriteID !== "" ? qsTr("NOTIFY ME ABOUT MY TEAM'S MATCHES")
                                                   : qsTr("NOTIFY ME ABOUT EVERY MATCH")
            font.pixelSize: 10
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        ToggleRow {
            objectName: "notifyStarts"
            Layout.fillWidth: true
            text: qsTr("When a match starts")
            on: page.settings.notifyStarts
            onToggled: page.settings.notifyStarts = !on
        }
        ToggleRow {
            objectName: "notifyWickets"
            Layout.fillWidth: true
            text: qsTr("When a wicket falls")
            on: page.settings.notifyWickets
            onToggled: page.settings.notifyWickets = !on
        }
        ToggleRow {
            objectName: "notifyResults"
            Layout.fillWidth: true
            text: qsTr("When a match ends")
            on: page.settings.notifyResults
            onToggled: page.settings.notifyResults = !on
        }
        Divider { Layout.fillWidth: true }
        ToggleRow {
            objectName: "startAtLogin"
            Layout.fillWidth: true
            text: qsTr("Start at login")
            on: page.settings.startAtLogin
            onToggled: page.settings.startAtLogin = !on
        }
    }
}
