# Sourced by the measuring scripts, inside dbus-run-session: a private Xvfb display, its own
# runtime and cache folders, and a StatusNotifierWatcher. Everything started goes into `pids`
# and is stopped, and the folder removed, when the script exits.

# A desktop starts its notification server with the display; the bus would start one without
# it, which dies at once. Its process is left in `notifications`.
start_notifications() {
    dunst &
    notifications=$!
    for _ in $(seq 50); do
        dbus-send --session --dest=org.freedesktop.DBus --type=method_call --print-reply / \
            org.freedesktop.DBus.GetNameOwner string:org.freedesktop.Notifications \
            >/dev/null 2>&1 && break
        sleep 0.1
    done
}

start_desktop() {
    work=$(mktemp -d)
    pids=()
    trap 'kill ${pids[*]} 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$work"' EXIT
    exec 5>"$work/display"
    Xvfb -displayfd 5 -screen 0 1280x800x24 -nolisten tcp -noreset &
    pids+=($!)
    for _ in $(seq 50); do [[ -s $work/display ]] && break; sleep 0.1; done
    export DISPLAY=:$(cat "$work/display") XDG_RUNTIME_DIR=$work XDG_CACHE_HOME=$work/cache \
        XDG_CONFIG_HOME=$work/config
    start_notifications
    pids+=($notifications)
    status-notifier-watcher &
    pids+=($!)
    # The panel's side: a host registered with the watcher, without which Qt's own tray icon
    # (the memory floor's) takes the desktop for one with no tray.
    /usr/bin/python3 -c '
from gi.repository import Gio, GLib
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
name = "org.kde.StatusNotifierHost-measure"
Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.NONE, None, None)
for _ in range(50):
    try:
        bus.call_sync("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                      "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierHost",
                      GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, 1000, None)
        break
    except GLib.Error:
        GLib.usleep(100000)
GLib.MainLoop().run()
' &
    pids+=($!)
    for _ in $(seq 50); do
        dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher \
            /StatusNotifierWatcher org.freedesktop.DBus.Properties.Get \
            string:org.kde.StatusNotifierWatcher string:IsStatusNotifierHostRegistered 2>/dev/null \
            | grep -q "boolean true" && break
        sleep 0.1
    done
}
