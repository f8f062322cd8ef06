pragma ComponentBehavior: Bound

import QtQuick
import ZelMenuBar

MatchList {
    id: list
    delegate: MatchRow {
        controller: list.controller
        rows: list.tab.model
    }
}
