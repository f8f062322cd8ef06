# Sourced by the measuring scripts, inside dbus-run-session: a private Xvfb display, its own
# runtime and cache folders, and a StatusNotifierWatcher. Everything started goes into `pids`
# and is stopped, and the folder removed, when the script exits.
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
    status-notifier-watcher &
    pids+=($!)
}
