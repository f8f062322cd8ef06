import QtQuick
import ZelMenuBar

MatchList {
    sectioned: true
    delegate: FixtureRow {}
}
