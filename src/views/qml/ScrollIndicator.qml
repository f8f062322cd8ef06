import QtQuick

// A thin bar that shows where a list is while it moves, then fades.
Rectangle {
    required property Flickable flickable
    anchors.right: flickable.right
    anchors.rightMargin: 2
    y: flickable.y + flickable.visibleArea.yPosition * flickable.height
    width: 4
    height: flickable.visibleArea.heightRatio * flickable.height
    radius: 2
    color: Theme.secondary
    visible: flickable.visible && flickable.visibleArea.heightRatio < 1
    opacity: flickable.moving ? 0.8 : 0
    Behavior on opacity { NumberAnimation { duration: 300 } }
}
