import QtQuick

Rectangle {
    property real leadingInset: 0
    implicitHeight: 1
    color: Theme.divider
    x: leadingInset
    width: parent ? parent.width - leadingInset : 0
}
