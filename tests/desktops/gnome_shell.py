#!/usr/bin/python3
"""The app under a real GNOME Shell with the AppIndicator extension, headless, as a person uses
it: the item's label in the top bar; the popover flush under the item after a double click and
after "Show Scores" in the item's menu; Escape, a click on the desktop and a right click on the
item (which opens the shell's menu) closing it. Input goes through the shell's own virtual
devices, so the X11 and the Wayland session run the same steps. Pictures go to the output folder.

Usage: gnome_shell.py x11|wayland APP SIMULATOR PORT OUTPUT_FOLDER
"""
import json
import os
import re
import subprocess
import sys
import time

from desktop import Desktop, wait_for

session, app, simulator, port, output = sys.argv[1:6]
desktop = Desktop(f"gnome-{session}")
desktop.env["GSETTINGS_BACKEND"] = "keyfile"
env, start, check = desktop.env, desktop.start, desktop.check


def shell(script):
    """Runs JavaScript in the shell; its result, which the shell sends as JSON, or None."""
    found = re.match(r"\(true, '(.*)'\)$", desktop.run(
        "gdbus", "call", "--session", "-d", "org.gnome.Shell", "-o", "/org/gnome/Shell", "-m",
        "org.gnome.Shell.Eval", f"(() => {{ {script} }})()"), re.S)
    return json.loads(found.group(1).replace("\\'", "'")) if found else None


ITEM = ("const item = Object.entries(Main.panel.statusArea)"
        ".find(([key]) => key.startsWith('appindicator-'))?.[1];")
NOW = "const C = imports.gi.Clutter; const t = imports.gi.GLib.get_monotonic_time();"


def click(x, y, button=1, times=1):
    shell(f"{NOW} global.zelPointer.notify_absolute_motion(t, {x}, {y});"
          f"for (let i = 0; i < {times}; ++i) {{ global.zelPointer.notify_button(t, {button}, 1);"
          f"global.zelPointer.notify_button(t, {button}, 0); }} return 1;")


def key(name):
    shell(f"{NOW} global.zelKeys.notify_keyval(t, C.KEY_{name}, 1);"
          f"global.zelKeys.notify_keyval(t, C.KEY_{name}, 0); return 1;")


def picture(name):
    shell(f"new imports.gi.Shell.Screenshot().screenshot(false, imports.gi.Gio.File.new_for_path("
          f"'{output}/gnome-{session}-{name}.png').replace(null, false, 0, null), () => {{}});"
          "return 1;")


def popover():
    """The popover's frame on the app's X display while it is open and has the keyboard."""
    active = desktop.run("xdotool", "getactivewindow")
    return next((frame for _, frame, window in desktop.windows("--name", "^Scores")
                 if window == active), None)


def menu_open():
    return shell(f"{ITEM} return item.menu.isOpen;")


try:
    # GNOME 43 has no unsafe-mode switch: this extension opens Eval to the test.
    extension = desktop.path("data/gnome-shell/extensions/zel-test@zel.example")
    os.makedirs(extension)
    with open(f"{extension}/metadata.json", "w") as meta:
        json.dump({"uuid": "zel-test@zel.example", "name": "Zel test", "description": "Eval",
                   "shell-version": ["43"]}, meta)
    with open(f"{extension}/extension.js", "w") as script:
        script.write("function init() {}\nfunction enable() { global.context.unsafe_mode = true; }"
                     "\nfunction disable() {}\n")
    # The shell aborts without a system bus where systemd seats exist.
    system_bus = start("dbus-daemon", "--config-file=/usr/share/dbus-1/session.conf", "--nofork",
                       "--print-address", output=subprocess.PIPE, text=True)
    env["DBUS_SYSTEM_BUS_ADDRESS"] = system_bus.stdout.readline().strip()
    desktop.run("gsettings", "set", "org.gnome.shell", "enabled-extensions",
                "['ubuntu-appindicators@ubuntu.com', 'zel-test@zel.example']")
    if session == "x11":
        desktop.start_xvfb("+extension", "GLX", "+extension", "RANDR")
        start("gnome-shell", "--x11", "--replace")
    else:
        start("gnome-shell", "--headless", "--wayland", "--wayland-display", "zel-shell",
              "--virtual-monitor", "1280x800")
    # Started up, and out of the overview it opens with.
    if not check("the shell starts", wait_for(lambda: shell(
            "if (Main.layoutManager._startingUp) return false; Main.overview.hide();"
            "return !Main.overview.visible && !Main.overview.animationInProgress;"), 60)):
        raise SystemExit
    shell("const seat = imports.gi.Clutter.get_default_backend()"
          ".get_default_seat(); const T = imports.gi.Clutter.InputDeviceType;"
          "global.zelPointer = seat.create_virtual_device(T.POINTER_DEVICE);"
          "global.zelKeys = seat.create_virtual_device(T.KEYBOARD_DEVICE); return 1;")
    if session == "wayland":
        # The app runs on the shell's Xwayland, as it does by default in a Wayland session.
        env["WAYLAND_DISPLAY"] = "zel-shell"
        for name in ("DISPLAY", "XAUTHORITY"):
            env[name] = shell(f"return imports.gi.GLib.getenv('{name}');")
    start(simulator, "--port", port, "--scenario", "live-second-innings")
    start(app)

    def item():
        """The item's centre and label, once its label shows and it has stopped moving."""
        return shell(f"{ITEM} if (!item?._indicator.label) return null;"
                     "const [x, y] = item.get_transformed_position();"
                     "return {x: x + item.width / 2, y: y + item.height / 2,"
                     "label: item._indicator.label};")

    bar = wait_for(lambda: (lambda a, b: a == b and a)(item(), time.sleep(0.5) or item()), 30)
    if not check(f"the label reads the title ({bar and bar['label']})",
                 bar and re.match(r"\S+ .*\d", bar["label"])):
        raise SystemExit
    picture("bar")
    x, y = bar["x"], bar["y"]
    panel = shell("return Main.panel.height;")

    def opens(what, action):
        """The popover opens flush under the item, centred on it, with the keyboard."""
        time.sleep(0.4)  # a click soon after a closing click counts as that click
        action()
        frame = wait_for(popover, 10)
        return check(f"{what} opens the popover under the item ({frame})",
                     frame == (int(x) - 190, panel, 380, 500))

    def closes(what, action):
        action()
        return check(f"{what} closes it", wait_for(lambda: popover() is None, 5) is not None)

    opens("a double click on the item", lambda: click(x, y, times=2))
    picture("popover")
    closes("Escape", lambda: key("Escape"))
    # A single click opens the item's menu, drawn by the shell.
    click(x, y)
    entry = wait_for(lambda: shell(
        f"{ITEM} const entry = item.menu._getMenuItems().find(i => i.label?.text == 'Show Scores');"
        "if (!item.menu.isOpen || !entry) return null;"
        "const [ex, ey] = entry.get_transformed_position();"
        "return {x: ex + entry.width / 2, y: ey + entry.height / 2};"))
    if opens('"Show Scores" in the shell\'s menu', lambda: entry and click(entry["x"], entry["y"])):
        closes("a click on the desktop", lambda: click(300, 600))
    if opens("a double click on the item", lambda: click(x, y, times=2)):
        click(x, y, button=3)
        check("a right click on the item closes it and opens the shell's menu",
              wait_for(lambda: popover() is None and menu_open(), 5))
finally:
    desktop.finish()
