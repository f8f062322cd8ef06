pragma ComponentBehavior: Bound

import ZelMenuBar

MatchList {
    id: list
    sectioned: true
    delegate: ResultRow {
        controller: list.controller
        rows: list.tab.model
    }
}
