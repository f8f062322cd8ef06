import ZelMenuBar

MatchList {
    sectioned: true
    delegate: FixtureRow {}
}
