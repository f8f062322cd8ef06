#!/usr/bin/python3
"""Walks the popover with the real Orca and prints what it says after each key.

The app runs against the simulator at a fixed live moment, in Xvfb on a private session bus,
with Orca speaking through speech-dispatcher (to ALSA's null device where there is no sound
card). Each step is a key as xdotool names it, "idle:SECONDS" to wait with no key (the app
reloads meanwhile), "show" to open the popover as a second launch does, or "flat:DIRECTION" for
an Orca flat review key (KP_7, KP_8, KP_9: line up, this line, line down).

Usage: scripts/orca-walk.py [--build DIR] [--scenario NAME] STEP...
   eg: scripts/orca-walk.py show Tab Right Right Tab space Tab Right idle:75 Tab
Needs, beyond the test dependencies: the orca and speech-dispatcher-espeak-ng packages.
"""
import argparse
import os
import pty
import re
import subprocess
import sys
import threading
import time

here = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(here, "..", "tests", "desktops"))
if "DBUS_SESSION_BUS_ADDRESS" not in os.environ:  # a bus of its own, before desktop.py takes one
    os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])

from desktop import Desktop, enable_accessibility, wait_for  # noqa: E402

MOMENT = "2026-11-22T18:30:00+05:30"  # a chase under way, with results and fixtures around it

parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
parser.add_argument("--build", default=os.path.join(here, "..", "build", "dev"))
parser.add_argument("--scenario", default="live-second-innings")
parser.add_argument("steps", nargs="+")
options = parser.parse_args()

desktop = Desktop("orca")
spoken, lock = [], threading.Lock()


def listen(fd):
    """Orca's debug log, read as it is written: a pseudo-terminal is not buffered."""
    pending = b""
    while True:
        try:
            chunk = os.read(fd, 4096)
        except OSError:
            return
        pending += chunk
        *lines, pending = pending.split(b"\n")
        for line in lines:
            text = line.decode(errors="replace").rstrip()
            if os.environ.get("ORCA_WALK_RAW"):
                print("RAW", text, flush=True)
            found = re.search(r"SPEECH OUTPUT: '(.*)'(\{.*\})?$", text)
            if found:
                with lock:
                    spoken.append((time.monotonic(), found.group(1)))


def quiet_after(step_at, seconds=2.0):
    """What Orca said since the step, once it has said nothing for a while (or 20 s passed)."""
    deadline = step_at + 20
    while time.monotonic() < deadline:
        with lock:
            last = spoken[-1][0] if spoken else 0
        if time.monotonic() - max(last, step_at) > seconds:
            break
        time.sleep(0.1)
    with lock:
        return [text for at, text in spoken if at >= step_at]


try:
    desktop.start_xvfb()
    desktop.start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
    wait_for(lambda: desktop.gdbus("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress"))
    enable_accessibility()
    desktop.env["GTK_MODULES"] = "gail:atk-bridge"
    desktop.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    desktop.start_simulator(os.path.join(options.build, "tools/league-sim/zel-league-sim"),
                            "--scenario", options.scenario, "--start", MOMENT)
    app = os.path.join(options.build, "tests/zel-menubar-e2e")
    desktop.start(app)
    time.sleep(3)  # the app settles into its tray icon before Orca starts
    # Speech goes nowhere where there is no sound card: ALSA's null device takes it.
    with open(desktop.path(".asoundrc"), "w") as sound:
        sound.write("pcm.!default { type null }\n")
    speechd = desktop.path("config/speech-dispatcher")
    os.makedirs(speechd)
    with open(f"{speechd}/speechd.conf", "w") as config:
        config.write(open("/etc/speech-dispatcher/speechd.conf").read()
                     + '\nAudioOutputMethod "alsa"\n')
    prefs = desktop.path("orca")
    os.makedirs(prefs)
    main, follower = pty.openpty()
    threading.Thread(target=listen, args=(main,), daemon=True).start()
    desktop.start("orca", "-u", prefs, "-d", "braille", "--debug-file", os.ttyname(follower))
    wait_for(lambda: spoken, 60)
    quiet_after(time.monotonic())
    for step in options.steps:
        at = time.monotonic()
        if step == "show":
            desktop.start(app)
        elif step.startswith("idle:"):
            time.sleep(float(step[5:]))
        elif step.startswith("flat:"):
            desktop.key(step[5:])
        else:
            desktop.key(step)
        print(f"{step}: " + " | ".join(quiet_after(at)), flush=True)
finally:
    for process in reversed(desktop.started):
        desktop.stop(process)
    # Orca's speech server outlives it, on the runtime folder.
    subprocess.run(["pkill", "-f", f"speech-dispatcher.*{desktop.home}"])
