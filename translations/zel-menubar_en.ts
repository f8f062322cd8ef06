<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>APIClient</name>
    <message>
        <source>The request timed out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An SSL error has occurred and a secure connection to the server cannot be made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Internet connection appears to be offline.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid URL</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The response was too large.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AppcastFeed</name>
    <message>
        <source>The update feed is not valid XML (line %1: %2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The update feed is not an RSS feed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The update feed lists no version.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FavouriteMark</name>
    <message>
        <source>Favourite</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FixtureRow</name>
    <message>
        <source>vs</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MatchEvents</name>
    <message>
        <source>%1 vs %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 vs %2 has started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wicket! %1 %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 vs %2: result</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MatchRow</name>
    <message>
        <source>Expanded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Collapsed</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MatchRowPresenter</name>
    <message>
        <source>%1 for %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 in %2 overs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TBD</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 won, elected to field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 won, elected to bat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Abandoned</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Final</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delayed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1st Innings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2nd Innings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 against %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>, %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live: %1 %2 against %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live: %1 %2, chasing %3 against %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Abandoned: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delayed: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Upcoming: %1 at %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MenuBarController</name>
    <message>
        <source>Zel Menu Bar v%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Feedback / Report a Bug</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>♥ Support Me</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Zel Menu Bar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Scores</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zel Menu Bar %1 is currently the newest version available.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zel Menu Bar %1 is now available — you have %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occurred in retrieving update information: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A new version of Zel Menu Bar is available!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You’re up to date!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Download Page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update Error!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PopoverWindow</name>
    <message>
        <source>Scores</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ResultRow</name>
    <message>
        <source>Expanded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Collapsed</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScorecardContent</name>
    <message>
        <source>Loading scorecard…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScorecardModel</name>
    <message>
        <source>DNB</source>
        <comment>did not bat</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yet to bat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>did not bat</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScorecardPresenter</name>
    <message>
        <source>1st</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1st · %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2nd</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>2nd · %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ScorecardView</name>
    <message>
        <source>Yet to bat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BATTING</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Runs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Balls</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>4s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fours</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>6s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sixes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SR</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Strike rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BOWLING</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>O</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Overs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>M</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Maidens</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>W</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wickets</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Econ</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Economy</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FAVOURITE TEAM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NOTIFY ME ABOUT MY TEAM&apos;S MATCHES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NOTIFY ME ABOUT EVERY MATCH</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When a match starts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When a wicket falls</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When a match ends</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Spinner</name>
    <message>
        <source>Loading</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StatusTitle</name>
    <message>
        <source>%1 vs %2 • Delayed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delayed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zel • Toss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 chose to bat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 chose to field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starting Soon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1m</source>
        <comment>minutes</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1h</source>
        <comment>hours</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1h %2m</source>
        <comment>hours and minutes</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1d</source>
        <comment>days</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1d %2h</source>
        <comment>days and hours</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TabContent</name>
    <message>
        <source>Retry</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TeamListModel</name>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TeamSide</name>
    <message>
        <source>%1 logo</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TodayPresenter</name>
    <message>
        <source>Results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading results…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No results yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading today&apos;s matches…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Zel matches today</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fixtures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading fixtures…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No upcoming fixtures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updated %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Offline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Offline · %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TodayView</name>
    <message>
        <source>Refresh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ZelMatch</name>
    <message>
        <source>%1 won the toss, chose to field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 won the toss, chose to bat</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
