import QtQml
import QtQuick

// Shows its content with a 0.15 s ease-in-out slide and fade.
Item {
    id: expander
    property bool open: false
    default property alias content: holder.data
    width: parent ? parent.width : 0
    height: open ? holder.implicitHeight : 0
    clip: true
    visible: height > 0

    Behavior on height { NumberAnimation { duration: 150; easing.type: Easing.InOutQuad } }

    Column {
        id: holder
        width: parent.width
        y: expander.open ? 0 : -implicitHeight / 3
        opacity: expander.open ? 1 : 0
        Behavior on y { NumberAnimation { duration: 150; easing.type: Easing.InOutQuad } }
        Behavior on opacity { NumberAnimation { duration: 150; easing.type: Easing.InOutQuad } }
    }
}
