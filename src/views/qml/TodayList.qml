pragma ComponentBehavior: Bound

import ZelMenuBar

MatchList {
    id: list
    delegate: MatchRow {
        controller: list.controller
        rows: list.tab.model
    }
}
