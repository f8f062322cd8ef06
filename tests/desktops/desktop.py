"""A desktop of a test's own: private XDG folders, processes that end with the test, waits that
follow a state, checks that print PASS or FAIL, and the X11 and D-Bus views a panel has."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time

from gi.repository import Gio, GLib

BUS = Gio.bus_get_sync(Gio.BusType.SESSION)
# Signals and the services a test publishes are served while the test waits.
threading.Thread(target=GLib.MainLoop().run, daemon=True).start()


SCREEN, POPOVER = (1280, 800), (380, 500)
GAP = 4  # the app's, between the popover and an item that no panel edge tells it about
SAME_CLICK_SECONDS = 0.3  # a click on the item this soon after a click away is that click


def wait_for(condition, seconds=30):
    """The condition's first true value within the time (long enough with both cores busy)."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.2)
    return None


def wait_steady(condition, seconds=30):
    """The condition's first true value that the next look finds unchanged, or None."""
    seen = []

    def steady():
        seen[:] = seen[-1:] + [condition()]
        return seen[-1] if seen[-1] and seen[0] == seen[-1] and len(seen) == 2 else None
    return wait_for(steady, seconds)


def misplaced(frame, centre, edge, below=True):
    """Why the frame is not the popover at the item, or "": wholly on screen, flush against the
    panel's edge, its span holding the item's centre, centred on it as far as the screen allows."""
    x, y, width, height = frame or (0, 0, 0, 0)
    wanted = min(max(centre - width / 2, 0), SCREEN[0] - width)
    return next((why for why, wrong in (
        ("no popover", not frame), (f"{width} x {height}", (width, height) != POPOVER),
        ("not wholly on screen", x < 0 or y < 0 or x + width > SCREEN[0] or y + height > SCREEN[1]),
        (f"not flush against the panel at y {edge}", (y if below else y + height) != edge),
        (f"the item's centre {centre} outside its span", not x <= centre <= x + width),
        (f"x {x}, not {wanted:g}, which centres it as far as the screen allows",
         abs(x - wanted) > 1)) if wrong), "")


def call(name, path, interface, method, arguments=None, reply="()"):
    """A D-Bus call on the session bus; its unpacked reply, or None on an error."""
    try:
        return BUS.call_sync(name, path, interface, method, arguments, GLib.VariantType(reply),
                             Gio.DBusCallFlags.NONE, 10000, None).unpack()
    except GLib.Error:
        return None


def enable_accessibility():
    call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
         GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))))


class Desktop:
    def __init__(self, name):
        self.name = name
        self.home = tempfile.mkdtemp(prefix=f"zel-{name}-")
        self.env = dict(os.environ, HOME=self.home, XDG_CONFIG_HOME=f"{self.home}/config",
                        XDG_CACHE_HOME=f"{self.home}/cache", XDG_DATA_HOME=f"{self.home}/data",
                        XDG_RUNTIME_DIR=self.home)
        for variable in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            self.env.pop(variable, None)
        self.started, self.failures = [], []
        self.closed_at = 0.0

    def path(self, relative):
        return os.path.join(self.home, relative)

    def start(self, *command, output=subprocess.DEVNULL, errors=subprocess.DEVNULL, **options):
        self.started.append(subprocess.Popen(command, env=self.env, stdout=output, stderr=errors,
                                             **options))
        return self.started[-1]

    def start_simulator(self, simulator, *options, port=0):
        """The simulator on a port of its own (0: any free one), or the test ends saying why."""
        log = self.path(f"simulator-{len(self.started)}.log")
        process = self.start(simulator, "--port", str(port), *options, output=open(log, "w"),
                             errors=subprocess.STDOUT)
        said = wait_for(lambda: (process.poll() is not None or
                                 re.search(r" on http://127\.0\.0\.1:\d+$", open(log).read(), re.M))
                        and open(log).read().strip()) or "it said nothing"
        found = re.search(r" on (http://127\.0\.0\.1:(\d+))$", said, re.M)
        if not self.check(f"the simulator serves on a port of its own ({port or 'any'}): {said}",
                          found and port in (0, int(found.group(2)))):
            self.finish()
        self.env["ZEL_E2E_ORIGIN"] = found.group(1)
        return process, found.group(1), int(found.group(2))

    def start_xvfb(self, *extensions):
        read, write = os.pipe()
        self.start("Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten",
                   "tcp", "-noreset", *extensions, pass_fds=[write])
        self.env["DISPLAY"] = ":" + os.read(read, 16).decode().strip()

    def run(self, *command):
        return subprocess.run(command, env=self.env, capture_output=True, text=True,
                              timeout=20).stdout.strip()

    def gdbus(self, name, path, method, *arguments):
        return self.run("gdbus", "call", "--session", "-d", name, "-o", path, "-m", method,
                        *arguments)

    @staticmethod
    def stop(process):
        process.terminate()
        try:
            return process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            return process.wait()

    def check_placed(self, what, frame, centre, edge, below=True, seen=""):  # -> a popover shown?
        wrong = misplaced(frame, centre, edge, below)
        self.check(f"{what} ({frame}{': ' + wrong if wrong else ''}{seen})", not wrong)
        return frame is not None

    def closed(self, popover_closed):
        """Whether the popover closed, noting when: the app's same-click rule counts from then."""
        self.closed_at = time.monotonic() if popover_closed else self.closed_at
        return popover_closed

    def past_same_click(self):
        """Waits out the app's same-click rule, counted from when the test saw the popover go,
        which is after the app started counting."""
        time.sleep(max(0.0, self.closed_at + SAME_CLICK_SECONDS - time.monotonic()))

    def check(self, what, passed):
        print(f"{'PASS' if passed else 'FAIL'} {self.name}: {what}", flush=True)
        if not passed:
            self.failures.append(what)
        return passed

    def finish(self):
        for process in reversed(self.started):
            if process.poll() is None:
                self.stop(process)
        shutil.rmtree(self.home, ignore_errors=True)
        print(f"{self.name}: {len(self.failures)} failed")
        sys.exit(1 if self.failures else 0)

    def windows(self, *search):
        """Name and frame (x, y, width, height) of each visible X window xdotool finds."""
        found = []
        for window in self.run("xdotool", "search", "--onlyvisible", *search).split():
            shape = dict(line.split("=") for line in
                         self.run("xdotool", "getwindowgeometry", "--shell", window).split())
            found.append((self.run("xdotool", "getwindowname", window),
                          tuple(int(shape[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")), window))
        return found

    def click(self, x, y, button=1, times=1):
        self.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", str(times),
                 str(button))

    def key(self, name):
        self.run("xdotool", "key", name)


class StatusItem:
    """A StatusNotifierItem as a panel reads and clicks it."""
    PATH, INTERFACE = "/StatusNotifierItem", "org.kde.StatusNotifierItem"

    def __init__(self, name):
        self.name = name

    def get(self, prop):
        value = call(self.name, self.PATH, "org.freedesktop.DBus.Properties", "Get",
                     GLib.Variant("(ss)", (self.INTERFACE, prop)), "(v)")
        return value[0] if value else None

    def tool_tip(self):
        return (self.get("ToolTip") or [None] * 3)[2]

    def activate(self, x=600, y=30):
        call(self.name, self.PATH, self.INTERFACE, "Activate", GLib.Variant("(ii)", (x, y)))

    def menu(self):
        """The top entries of the exported menu: id and label."""
        layout = call(self.name, self.get("Menu"), "com.canonical.dbusmenu", "GetLayout",
                      GLib.Variant("(iias)", (0, -1, [])), "(u(ia{sv}av))")
        return [(entry[0], entry[1].get("label", "")) for entry in layout[1][2]] if layout else []

    def click_entry(self, entry):
        call(self.name, self.get("Menu"), "com.canonical.dbusmenu", "Event",
             GLib.Variant("(isvu)", (entry, "clicked", GLib.Variant("s", ""), 0)))


def watch_labels(item, labels):
    """Appends each label the item announces to the list."""
    BUS.signal_subscribe(item, StatusItem.INTERFACE, "XAyatanaNewLabel", StatusItem.PATH, None,
                         Gio.DBusSignalFlags.NONE,
                         lambda *signal: labels.append(signal[5].unpack()[0]))


def publish_portal(settings, delay_ms):
    """The desktop portal's settings service, answering from the table as late as a portal that
    the bus is still starting, and wrapped twice, as older portals answer."""
    node = Gio.DBusNodeInfo.new_for_xml(
        "<node><interface name='org.freedesktop.portal.Settings'><method name='Read'>"
        "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
        "<arg type='v' direction='out'/></method></interface></node>")

    def read(connection, sender, path, interface, method, arguments, invocation):
        value = settings.get("/".join(arguments.unpack()))
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
            return
        GLib.timeout_add(delay_ms, lambda: invocation.return_value(
            GLib.Variant("(v)", (GLib.Variant("v", value),))) and False)

    BUS.register_object("/org/freedesktop/portal/desktop", node.interfaces[0], read)
    Gio.bus_own_name_on_connection(BUS, "org.freedesktop.portal.Desktop", 0, None, None)


def register_host(watcher):
    """Registers this process as a StatusNotifierHost with the watcher, once the watcher answers."""
    host = f"org.kde.StatusNotifierHost-{os.getpid()}"
    Gio.bus_own_name_on_connection(BUS, host, 0, None, None)
    return wait_for(lambda: call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                 GLib.Variant("(s)", ("org.kde.StatusNotifierWatcher",)), "(u)")
                    == (watcher.pid,) and call(
                        "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                        "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierHost",
                        GLib.Variant("(s)", (host,))) is not None)


def registered_item():
    items = call("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                 "org.freedesktop.DBus.Properties", "Get",
                 GLib.Variant("(ss)", ("org.kde.StatusNotifierWatcher",
                                       "RegisteredStatusNotifierItems")), "(v)")
    return items[0][0].split("/")[0] if items and items[0] else None

