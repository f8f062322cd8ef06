import QtQuick
import ZelMenuBar

// Work under way: the circular arrows, turning while visible.
SymbolIcon {
    id: spinner
    width: 18
    height: 18
    name: "arrow.2.circlepath"
    color: Theme.secondary
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Loading")
    Accessible.ignored: !visible
    RotationAnimator on rotation {
        running: spinner.visible
        from: 0
        to: 360
        duration: 1200
        loops: Animation.Infinite
    }
}
