#!/usr/bin/python3
"""The app under a real GNOME Shell with the AppIndicator extension, headless, as a person uses
it: the item and its label in the top bar, the popover flush under the item after "Show Scores"
and after a double click, Escape and a click away closing it, a right click while it is open.
Input goes through the shell's own virtual devices, so X11 and Wayland sessions run the same
steps. Pictures of the bar and of the open popover go to the output folder.

Usage: real_shells.py x11|wayland APP SIMULATOR PORT OUTPUT_FOLDER
"""
import json
import os
import re
import subprocess
import sys
import tempfile
import time

session, app, simulator, port, output = sys.argv[1:6]
home = tempfile.mkdtemp(prefix="zel-shell-")
env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=f"{home}/config", XDG_CACHE_HOME=f"{home}/cache",
           XDG_DATA_HOME=f"{home}/data", XDG_RUNTIME_DIR=home, GSETTINGS_BACKEND="keyfile")
for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
    env.pop(name, None)
started = []
failures = []


def start(*command, log=subprocess.DEVNULL):
    process = subprocess.Popen(command, env=env, stdout=log, stderr=log)
    started.append(process)
    return process


def wait_for(what, condition, seconds=20):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.2)
    raise SystemExit(f"FAIL {session}: {what}")


def check(what, passed):
    print(f"{'PASS' if passed else 'FAIL'} {session}: {what}")
    if not passed:
        failures.append(what)


def shell(script):
    """Runs JavaScript in the shell; its result, which the shell sends as JSON, or None."""
    done = subprocess.run(["gdbus", "call", "--session", "-d", "org.gnome.Shell", "-o",
                           "/org/gnome/Shell", "-m", "org.gnome.Shell.Eval",
                           f"(() => {{ {script} }})()"],
                          env=env, capture_output=True, text=True)
    found = re.match(r"\(true, '(.*)'\)$", done.stdout.strip(), re.S)
    return json.loads(found.group(1).replace("\\'", "'")) if found else None


INDICATOR = ("const item = Object.entries(Main.panel.statusArea)"
             ".find(([key]) => key.startsWith('appindicator-'));")
CLUTTER = "const C = imports.gi.Clutter; const t = imports.gi.GLib.get_monotonic_time();"


def click(x, y, button=1, times=1):
    if session == "x11":
        subprocess.run(["xdotool", "mousemove", str(int(x)), str(int(y)), "click", "--repeat",
                        str(times), "--delay", "60", str(button)], env=env)
        return
    shell(f"{CLUTTER} global.zelPointer.notify_absolute_motion(t, {x}, {y});"
          f"for (let i = 0; i < {times}; ++i) {{ global.zelPointer.notify_button(t, {button}, 1);"
          f"global.zelPointer.notify_button(t, {button}, 0); }} return 1;")


def key(name):
    shell(f"{CLUTTER} global.zelKeys.notify_keyval(t, C.KEY_{name}, 1);"
          f"global.zelKeys.notify_keyval(t, C.KEY_{name}, 0); return 1;")


def picture(name):
    shell(f"new imports.gi.Shell.Screenshot().screenshot(false, imports.gi.Gio.File"
          f".new_for_path('{output}/gnome-{session}-{name}.png').replace(null, false, 0, null),"
          f" () => {{}}); return 1;")


def popover():
    """The popover's frame on the app's X display, or None while it is closed."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Scores$"], env=env,
                           capture_output=True, text=True).stdout.split()
    for window in found:
        shape = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], env=env,
                               capture_output=True, text=True).stdout
        values = dict(line.split("=") for line in shape.split())
        return tuple(int(values[k]) for k in ("X", "Y", "WIDTH", "HEIGHT"))
    return None


try:
    extension = f"{home}/data/gnome-shell/extensions/zel-test@zel.example"
    os.makedirs(extension)
    # GNOME 43 has no unsafe-mode switch: this extension opens Eval to the test.
    with open(f"{extension}/metadata.json", "w") as meta:
        json.dump({"uuid": "zel-test@zel.example", "name": "Zel test", "description": "Eval",
                   "shell-version": ["43"]}, meta)
    with open(f"{extension}/extension.js", "w") as script:
        script.write("function init() {}\nfunction enable() { global.context.unsafe_mode = true; }"
                     "\nfunction disable() {}\n")
    # The shell aborts without a system bus where systemd seats exist.
    system_bus = subprocess.Popen(["dbus-daemon", "--config-file=/usr/share/dbus-1/session.conf",
                                   "--nofork", "--print-address"], stdout=subprocess.PIPE, text=True)
    started.append(system_bus)
    env["DBUS_SYSTEM_BUS_ADDRESS"] = system_bus.stdout.readline().strip()
    subprocess.run(["gsettings", "set", "org.gnome.shell", "enabled-extensions",
                    "['ubuntu-appindicators@ubuntu.com', 'zel-test@zel.example']"], env=env,
                   check=True)
    if session == "x11":
        read, write = os.pipe()
        xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24",
                                 "+extension", "GLX", "+extension", "RANDR", "-nolisten", "tcp"],
                                pass_fds=[write], stderr=subprocess.DEVNULL)
        started.append(xvfb)
        env["DISPLAY"] = ":" + os.read(read, 16).decode().strip()
        start("gnome-shell", "--x11", "--replace")
    else:
        start("gnome-shell", "--headless", "--wayland", "--wayland-display", "zel-shell",
              "--virtual-monitor", "1280x800")
    wait_for("the shell answers", lambda: shell("return 1;") == 1, 60)
    shell("Main.overview.hide(); const seat = imports.gi.Clutter.get_default_backend()"
          ".get_default_seat(); const T = imports.gi.Clutter.InputDeviceType;"
          "global.zelPointer = seat.create_virtual_device(T.POINTER_DEVICE);"
          "global.zelKeys = seat.create_virtual_device(T.KEYBOARD_DEVICE); return 1;")
    if session == "wayland":
        # The app runs on the shell's Xwayland, as it does by default in a Wayland session.
        env["WAYLAND_DISPLAY"] = "zel-shell"
        for name in ("DISPLAY", "XAUTHORITY"):
            env[name] = shell(f"return imports.gi.GLib.getenv('{name}');")

    start(simulator, "--port", port, "--scenario", "live-second-innings")
    start(app, log=open(f"{output}/gnome-{session}-app.log", "w"))
    bar = wait_for("the item and its label in the bar", lambda: shell(
        f"{INDICATOR} if (!item) return null; const [x, y] = item[1].get_transformed_position();"
        "const label = item[1]._indicator.label;"
        "return label ? {x, y, width: item[1].width,"
        "height: item[1].height, label, bottom: Main.panel.height} : null;"), 30)
    check(f"the label reads the title ({bar['label']})", re.match(r"\S+ .*\d", bar["label"]))
    picture("bar")

    def flush_under(expected_x):
        frame = wait_for("the popover opens", popover, 10)
        print(f"     popover at {frame} under an item at x {bar['x']}..{bar['x'] + bar['width']}")
        return frame[1] == bar["bottom"] and frame[2:] == (380, 500) and (
            expected_x is None or frame[0] == expected_x) and frame[0] + 380 > bar["x"]

    def closes(what, action):
        action()
        check(f"{what} closes the popover",
              wait_for_state(lambda: popover() is None))

    def wait_for_state(condition):
        try:
            return wait_for("", condition, 5)
        except SystemExit:
            return False

    middle = bar["x"] + bar["width"] // 2
    click(middle, bar["height"] // 2, button=3)  # the shell's own menu of the item
    entry = wait_for("the menu shows \"Show Scores\" first", lambda: shell(
        f"{INDICATOR} const entry = item[1].menu._getMenuItems()[0];"
        "if (!item[1].menu.isOpen || !entry || entry.label.text !== 'Show Scores') return null;"
        "const [x, y] = entry.get_transformed_position();"
        "return [x + entry.width / 2, y + entry.height / 2];"))
    click(*entry)
    check("\"Show Scores\" opens the popover flush under the bar, by the item",
          flush_under(1280 - 380))
    picture("popover")
    closes("Escape", lambda: key("Escape"))
    click(middle, bar["height"] // 2)
    check("a left click opens it centred under the click", flush_under(middle - 190))
    closes("a click on the desktop", lambda: click(300, 600))
    click(middle, bar["height"] // 2)
    wait_for("the popover opens again", popover, 10)
    click(middle, bar["height"] // 2, button=3)
    check("a right click while it is open closes it and opens the shell's menu",
          wait_for_state(lambda: popover() is None and shell(f"{INDICATOR} return item[1].menu.isOpen;")))
finally:
    for process in reversed(started):
        process.terminate()
    for process in started:
        process.wait()
    subprocess.run(["rm", "-rf", home])
sys.exit(1 if failures else 0)
