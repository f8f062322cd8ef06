import QtQuick
import ZelMenuBar

SymbolIcon {
    property bool open: false
    name: open ? "chevron.up" : "chevron.down"
    color: Theme.secondary
    width: 9
    height: 9
}
