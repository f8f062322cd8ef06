#!/usr/bin/python3
"""One league day as a user lives it, in as few runs of the app as it takes: Xvfb with trayer,
then a StatusNotifierWatcher on the session bus (run this under dbus-run-session), dunst, the
accessibility bus and weston, the league simulator on loopback, keys and clicks from xdotool.

Usage: endtoend.py APP SIMULATOR VERSION OUTPUT_FOLDER
"""
import datetime
import json
import os
import re
import signal
import subprocess
import sys
import traceback
import time
import urllib.request

from desktop import (GAP, SAME_CLICK_SECONDS, Desktop, StatusItem, call, enable_accessibility,
                     publish_portal, register_host, registered_item, wait_for, wait_steady,
                     watch_labels)
from gi.repository import GLib

app, simulator, version, output = sys.argv[1:5]
here = os.path.dirname(os.path.abspath(__file__))
desktop = Desktop("endtoend")
check = desktop.check
origin, port = "", 0
AFTERNOON = datetime.datetime.fromisoformat("2026-11-22T14:00:00+05:30")
BAT = "\U0001F3CF"
ingest_log = desktop.path("ingest.jsonl")
cache_file = desktop.path("cache/ZelMenuBar/telemetrysignalcache")
labels = []


def sim(method, path, body=None):
    """The simulator's answer to a request, when it is a 200."""
    request = urllib.request.Request(origin + path, body and body.encode(), method=method)
    try:
        with urllib.request.urlopen(request, timeout=10) as answer:
            return answer.read()
    except OSError:
        return None


def match_at(moment):
    """Today's match as the simulator serves it at this moment of the league."""
    sim("PUT", "/sim/clock", moment.isoformat())
    return json.loads(sim("GET", "/api/matches/today") or "{}").get("matches", [{}])[0]


def start_sim(*more):
    """The simulator, back on its first port when it comes back: the running app knows that."""
    global origin, port
    process, origin, port = desktop.start_simulator(
        simulator, "--scenario", "next-start-today", "--start", AFTERNOON.isoformat(),
        "--ingest-log", ingest_log,
        # no update on offer: the notifications are the match's
        "--announce-version", version, *more, port=port)
    return process


def stored(key):
    """A value of the app's own analytics store (of its identifier, which a default build sends)."""
    path = desktop.path("config/ZelMenuBar/seprior.64a5b131124f")
    found = os.path.exists(path) and re.search(rf'^{key}="?(@ByteArray\()?(.*?)\)?"?$',
                                               open(path).read(), re.M)
    return found.group(2).replace('\\"', '"') if found else ""


def popover():
    return next((frame for name, frame, _ in desktop.windows("--classname", "^zel-menubar-e2e$")
                 if name.startswith("Scores")), None)


def tray_icon():
    return next((frame for _, frame, _ in desktop.windows("--classname", "^zel-menubar-e2e$")
                 if 1 < frame[2] <= 64 and frame[3] <= 64), None)


def popover_becomes(shown):
    changed = wait_for(lambda: (popover() is not None) == shown) is not None
    return changed if shown else desktop.closed(changed)


def quits_cleanly(process):
    try:
        return process.wait(10) == 0
    except subprocess.TimeoutExpired:
        return False


def notifications():
    """The summaries of every notification dunst received, oldest first: those on screen are
    closed first, so that the history holds them all."""
    desktop.run("dunstctl", "close-all")
    history = json.loads(desktop.run("dunstctl", "history") or '{"data": [[]]}')
    return [note["summary"]["data"] for note in reversed(history["data"][0])]


def batches():
    return [json.loads(line) for line in (open(ingest_log) if os.path.exists(ingest_log) else [])
            if line.strip()]


def types():
    return [record["type"] for batch in batches() for record in batch]


def tree():
    """The popover as a screen reader reads it, over AT-SPI."""
    return desktop.run("/usr/bin/python3", f"{here}/accessible_tree.py", "zel-menubar")


def focused():
    """The focused object, not a focus scope around it (a list) that says it has the focus too."""
    found = re.findall(r"\t([^\t\n]*\t[^\t\n]*)\t[^\n]*focused", tree())
    return found[-1] if found else ""


def start_app_with_item():
    previous = registered_item()
    process = desktop.start(app)
    name = check("the app's item registers", wait_for(
        lambda: registered_item() not in (None, previous) and registered_item()))
    return process, StatusItem(name or "org.kde.StatusNotifierItem-none")


def activate_to(item, shown, x=600):
    item.activate(x, 30)
    return popover_becomes(shown)


try:
    desktop.start_xvfb()
    # A desktop that asks for reduced motion and inverted colours, a screen reader's bus and a
    # notification server.
    on, off = GLib.Variant("b", True), GLib.Variant("b", False)
    publish_portal({"org.gnome.desktop.interface/enable-animations": off,
                    "org.gnome.desktop.a11y.applications/screen-magnifier-enabled": on,
                    "org.gnome.desktop.a11y.magnifier/invert-lightness": on}, 300)
    desktop.start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
    dunst = desktop.start("dunst")
    bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
    wait_for(lambda: call(*bus, "NameHasOwner", GLib.Variant("(s)", ("org.a11y.Bus",)), "(b)")
             == (True,))
    enable_accessibility()
    # Asked before dunst holds its name, the bus would start another one, without a display.
    wait_for(lambda: call(*bus, "GetConnectionUnixProcessID",
                          GLib.Variant("(s)", ("org.freedesktop.Notifications",)), "(u)")
             == (dunst.pid,))

    league = start_sim()
    match = match_at(AFTERNOON)
    start = datetime.datetime.fromisoformat(match["startTime"])
    toss = wicket = start - datetime.timedelta(minutes=25)
    # The first wicket: a summary past "x/0".
    while not re.search(r"/[1-9]", str((match_at(wicket).get("batting") or {})
                                       .get("firstSummary"))):
        wicket += datetime.timedelta(minutes=2)
    end = start + datetime.timedelta(hours=5)
    check("the simulator's match ends by the evening", match_at(end).get("status") == "finished")
    match_at(AFTERNOON)
    # Every alert on for the favourite's matches.
    os.makedirs(desktop.path("config/ZelMenuBar"))
    with open(desktop.path("config/ZelMenuBar/settings.ini"), "w") as settings:
        settings.write(f"[favourite]\nid={match['homeTeam']['id']}\n"
                       f"name={match['homeTeam']['name']}\n"
                       "[notify]\nstarts=true\nwickets=true\nresults=true\n")

    # The tray icon in trayer: closed by the icon, by a click elsewhere and by Escape, as the
    # popup holds the keyboard.
    trayer = desktop.start("trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                           "--height", "24")
    first = desktop.start(app)
    icon = check("trayer shows the tray icon", wait_for(tray_icon)) or (0, 0, 0, 0)
    centre = (icon[0] + icon[2] // 2, icon[1] + icon[3] // 2)
    # trayer sits at the screen's right end: the popover keeps to the screen there.
    for closer, close in (("the icon", lambda: desktop.click(*centre)),
                          ("a click elsewhere", lambda: desktop.click(200, 600)),
                          ("Escape", lambda: desktop.key("Escape"))):
        desktop.past_same_click()
        desktop.click(*centre)
        desktop.check_placed("the icon opens the popover at it", wait_for(popover), centre[0],
                             icon[1] + icon[3] + GAP)
        close()
        check(f"{closer} closes it", popover_becomes(False))
    second = desktop.start(app)
    check("a second launch shows the running copy's popover and steps aside",
          quits_cleanly(second) and popover_becomes(True))
    desktop.key("Escape")
    popover_becomes(False)

    # A watcher appears: the tray icon makes way for the item, which a panel reads and clicks.
    watcher = desktop.start("status-notifier-watcher")
    check("a panel registers with the watcher", register_host(watcher))
    item = StatusItem(wait_for(registered_item))
    check("the tray icon makes way for the item", wait_for(lambda: tray_icon() is None))
    watch_labels(item.name, labels)
    label = wait_for(lambda: item.get("XAyatanaLabel"))
    check("the item names itself and shows the title as its label and tool tip",
          [item.get("Title"), item.get("ItemIsMenu"), item.get("IconName"),
           item.tool_tip()] == ["Zel Menu Bar", False, "zel-menubar", f"{BAT}  {label}"])

    # The simulator's clock moves on between reloads (F5 in the popover): the toss, a wicket
    # and the result reach dunst, and a click on the result opens today's matches.
    activate_to(item, True)
    for moment, count, told in ((toss, 1, r" has started$"), (wicket, 2, r"^Wicket! ")):
        match_at(moment)
        desktop.key("F5")
        check(f"dunst shows {told}", wait_for(lambda: len(notifications()) == count)
              and re.search(told, notifications()[-1]))
    desktop.key("Escape")
    popover_becomes(False)
    match_at(end)
    activate_to(item, True)
    desktop.key("F5")
    wait_for(lambda: desktop.run("dunstctl", "count", "displayed") == "1")
    desktop.key("Escape")
    popover_becomes(False)
    desktop.run("dunstctl", "action", "0")
    check("a click on the result's notification opens the popover", popover_becomes(True))
    check("the result is the third notification",
          len(notifications()) == 3 and notifications()[-1].endswith(": result"))

    # Label and tool tip follow the score together, to the title a fresh state object computes
    # from the service; a ball bowled between the two loads waits for the next refresh.
    match_at(wicket)
    desktop.key("F5")
    expected = wait_for(lambda: (lambda title: f"{BAT}  {item.get('XAyatanaLabel')}" == title
                                 and title)(desktop.run(app, "--expected-title")), 45)
    check(f"label and tool tip follow the score ({expected})",
          expected and item.tool_tip() == expected and labels[-1:] == [expected[3:]])
    # Opened by going live, the row says so as one the user opened would.
    check("the live row is described Expanded", wait_for(
        lambda: re.search(r"\tlist item\tLive: [^\t]+\t[^\t]*\tExpanded\n", tree())))
    activate_to(item, False)

    # The watcher goes: the tray icon is back, and its menu quits. The first run's signals have
    # reached the ingest: one new installation, on a desktop that said what it asks for.
    desktop.stop(watcher)
    icon = wait_for(tray_icon) or (0, 0, 0, 0)
    # An analytics batch waits for the sender's next turn, every 10 s, later on a busy machine.
    wait_for(batches, 60)
    today = datetime.date.today().isoformat()
    check("the first signals are the launch, the new installation and its session",
          types()[:3] == ["app.launched", "TelemetryDeck.Acquisition.newInstallDetected",
                          "TelemetryDeck.Session.started"])
    check("they carry the app's identifier, the desktop's settings and the first day", all(
        record["appID"] == "5F0C2A7E-3B91-4D6A-9E28-7C4B1D03A6F5" and
        record["payload"]["TelemetryDeck.Accessibility.isReduceMotionEnabled"] == "true" and
        record["payload"]["TelemetryDeck.Accessibility.isInvertColorsEnabled"] == "true" and
        record["payload"]["TelemetryDeck.Acquisition.firstSessionDate"] == today
        for record in (batches() or [[{}]])[0]))
    desktop.click(icon[0] + icon[2] // 2, icon[1] + icon[3] // 2, 3)
    menu = wait_for(lambda: next((frame for name, frame, _ in desktop.windows(
        "--classname", "^zel-menubar-e2e$") if not name.startswith("Scores") and frame[3] > 64),
        None)) or (0, 0, 0, 0)
    desktop.click(menu[0] + 40, menu[1] + menu[3] - 10)  # "Quit Zel Menu Bar", the last entry
    check("the tray icon's menu quits", quits_cleanly(first))
    check("the first day is stored", stored("firstSessionDate") == today)
    desktop.stop(trayer)

    # A start with the service down shows an error with "Retry" and no title; the service comes
    # back (its ingest refusing), and Return retries. The match is over by then: no alert.
    desktop.stop(league)
    watcher = desktop.start("status-notifier-watcher")
    register_host(watcher)
    running, item = start_app_with_item()
    activate_to(item, True)
    check("a start with the service down offers Retry",
          wait_for(lambda: "\tpush button\tRetry\t" in tree()))
    desktop.run("import", "-window", "root", f"{output}/e2e-service-failure.png")
    check("and shows no title", item.get("XAyatanaLabel") == "" and item.tool_tip() == BAT)
    first_run_batches = len(batches())
    league = start_sim("--ingest-status", "500")
    match_at(end)
    desktop.key("Return")
    check("Return retries", wait_for(lambda: item.get("XAyatanaLabel")))
    check("a match over before the start is not news", len(notifications()) == 3)

    # A screen reader finds the open popover, its controls and the finished match's scorecard.
    # A row says its state in a word and the match in a sentence, and whether it is open.
    shown = wait_for(lambda: (lambda text: re.search(
        r"\tlist item\tResult: [^\t]+\t[^\t]*\tCollapsed\n", text) and text)(tree())) or ""
    check("the reader finds the frame, Refresh, the tabs, the heading and a logo", all(
        part in shown for part in ("1\tframe\tScores\t", "\tpush button\tRefresh\t",
                                   "\tpage tab list\t", f"\theading\t{BAT}  Zel ")) and
        re.search(r"\timage\t[A-Z]+ logo\t", shown))
    check("each tab by its name, the open one selected", [
        "selected" in (re.search(rf"\tpage tab\t{tab}\t([^\n]*)", shown) or [""])[0]
        for tab in ("Results", "Today", "Fixtures")] == [False, True, False])
    check("nothing that is not shown, and no heading without its text", all(
        "showing" in line.split("\t")[3].split(",") for line in shown.splitlines()) and
        "\theading\t\t" not in shown and "\tseparator\t\t" not in shown)
    # The keyboard, as the reader hears it: Refresh, Settings, the tab that shows; Right takes
    # the focus and the selection to Fixtures, whose rows take the focus; Left from one hands
    # the focus to the tab bar; Tab goes on to the result, a row of its own tab's list.
    def press(name):
        before = focused()
        desktop.key(name)
        return wait_for(lambda: focused() != before and focused()) or before

    def parent_of_focused():
        lines = [line.split("\t") for line in tree().splitlines()]
        at = max((i for i, line in enumerate(lines) if "focused" in line[3]), default=0)
        return next(("\t".join(line[1:3]) for line in reversed(lines[:at])
                     if int(line[0]) < int(lines[at][0])), "")
    heard = [press(name) for name in ("Tab", "Tab", "Tab", "Right")]
    wait_for(lambda: "\tlist item\tUpcoming: " in tree())
    heard += [press("Tab"), press("Left"), press("Tab"), parent_of_focused()]
    check(f"the keys walk the header, the tabs, a fixture and the result ({heard})",
          heard[:4] == ["push button\tRefresh", "push button\tSettings", "page tab\tToday",
                        "page tab\tFixtures"] and heard[4].startswith("list item\tUpcoming: ")
          and heard[5:] == ["page tab\tToday", heard[6], "list\tToday"]
          and re.match(r"list item\tResult: .*, your team$", heard[6]))
    # Space opens it, and says so, into lines said as sentences under named columns.
    desktop.key("space")
    card = wait_for(lambda: (lambda text: re.search(
        r"\tlist item\tResult: [^\t]+\t[^\t]*focused[^\t]*\tExpanded\n", text) and text)(tree()),
        10) or ""
    check("Space opens it, says so, into a batting table of lines said as sentences",
          "\tnotification\tExpanded\t" in card and "\ttable\tBATTING\t" in card and
          "\ttable column header\tStrike rate\t" in card and
          re.search(r"\ttable row\t[^\t:]+, (not )?out: \d+ runs? from \d+ balls?, ", card))
    # The innings switch takes the focus with the selection, which a reload leaves there.
    heard = [press("Tab"), press("Right")]
    desktop.key("F5")
    check(f"the innings tabs take the focus, which stays through a reload ({heard})",
          heard[0].startswith("page tab\t1st") and heard[1].startswith("page tab\t2nd") and
          wait_for(lambda: re.search(r"\tnotification\tUpdated \d\d:\d\d\t", tree()))
          and focused() == heard[1])

    # SIGTERM is an ordinary quit; the signals the ingest refused wait on disk.
    running.send_signal(signal.SIGTERM)
    check("SIGTERM quits cleanly, and the refused signals wait on disk",
          quits_cleanly(running) and os.path.exists(cache_file)
          and len(batches()) == first_run_batches)

    # Under a Wayland compositor the app runs on Xwayland, whose window manager places ordinary
    # windows itself; the popup still opens where the item asked. The ingest takes signals
    # again: what waited on disk goes, and three runs made one installation.
    desktop.env.pop("DISPLAY")
    # Its log goes to a file: a pipe nobody reads would stop the compositor once full.
    weston_log = desktop.path("weston.log")
    desktop.start("weston", "--backend=headless-backend.so", "--xwayland", "--socket=zel-e2e",
                  "--width=1280", "--height=800", "--idle-time=0", output=open(weston_log, "w"),
                  errors=subprocess.STDOUT)
    desktop.env["DISPLAY"] = wait_for(lambda: (lambda found: found and found.group(1))(re.search(
        r"xserver listening on display (:\d+)", open(weston_log).read())))
    sim("PUT", "/sim/ingest-status", "200")
    sent = len(batches())
    running, item = start_app_with_item()
    # A panel's click is a point: the popover hangs a gap below it, kept on screen near its end.
    for x in (600, 1270):
        activate_to(item, True, x)
        desktop.check_placed(f"under weston the popover opens where the item asked ({x}, 30)",
                             wait_steady(popover), x, 30 + 1 + GAP)
        # weston hands the keyboard over after it shows the window, later on a busy machine
        wait_for(lambda: desktop.run("xdotool", "getwindowfocus", "getwindowname")
                 .startswith("Scores"))
        desktop.key("Escape")
        check("Escape closes it", popover_becomes(False))
    # A second activation within a click's time of the showing is taken as the same click.
    check("and the item opens and closes it again", activate_to(item, True)
          and not time.sleep(SAME_CLICK_SECONDS) and activate_to(item, False))
    kinds = ("TelemetryDeck.Acquisition.newInstallDetected", "app.launched",
             "TelemetryDeck.Session.started")
    counts = wait_for(lambda: types().count(kinds[2]) == 3 and [types().count(k) for k in kinds])
    check(f"what waited on disk is sent: three runs made one installation ({counts})",
          len(batches()) > sent and counts == [1, 3, 3] and not os.path.exists(cache_file))
    last = (item.menu() or [(0, "")])[-1]
    item.click_entry(last[0])
    check("the menu's last entry, Quit Zel Menu Bar, quits",
          last[1] == "Quit Zel Menu Bar" and quits_cleanly(running))
except Exception:  # noqa: BLE001 - a step that raises fails the run, with its trace
    traceback.print_exc()
    desktop.failures.append("a step raised")
finally:
    desktop.finish()
