#!/usr/bin/env bash
# Builds the app against the bundled league simulator and runs both: the simulator on
# 127.0.0.1:8765, the app in your panel. Ctrl+C (or "Quit Zel Menu Bar") ends both.
#
# Usage: scripts/run-demo.sh [--headless] [SCENARIO]
#   SCENARIO   a zel-league-sim scenario (default live-second-innings)
#   --headless run under Xvfb with trayer and a private session bus instead of your desktop,
#              and write screenshots of the tray, the popover and the menu to build/demo/screenshots
set -euo pipefail
cd "$(dirname "$0")/.."

headless=0
scenario=live-second-innings
for arg in "$@"; do
    case $arg in
    --headless) headless=1 ;;
    -h | --help) sed -n '2,9p' "$0"; exit 0 ;;
    *) scenario=$arg ;;
    esac
done

scripts/install-deps.sh
cmake --preset demo
cmake --build --preset demo --target zel-menubar zel-league-sim

build=build/demo
pids=()
trap 'kill "${pids[@]}" 2>/dev/null || true' EXIT

# The app's analytics batches land, one JSON array a line, in the simulator's ingest log.
"$build/tools/league-sim/zel-league-sim" --scenario "$scenario" \
    --ingest-log "$build/ingest.jsonl" &
pids+=($!)
for _ in $(seq 100); do
    (exec 3<>/dev/tcp/127.0.0.1/8765) 2>/dev/null && break
    sleep 0.1
done

if [[ $headless -eq 0 ]]; then
    "$build/src/app/zel-menubar"
    exit
fi

# Folders of its own, so that nothing of the run lands in yours; its analytics go to the
# simulator's ingest log before it quits.
home=$(mktemp -d)
trap 'kill "${pids[@]}" 2>/dev/null || true; rm -rf "$home"' EXIT
for folder in config cache data state runtime; do mkdir -p "$home/$folder"; done
chmod 700 "$home/runtime"
XDG_CONFIG_HOME=$home/config XDG_CACHE_HOME=$home/cache XDG_DATA_HOME=$home/data \
    XDG_STATE_HOME=$home/state XDG_RUNTIME_DIR=$home/runtime \
    dbus-run-session -- bash -c '
    set -euo pipefail
    build=$1
    shots=$build/screenshots
    mkdir -p "$shots"
    batches=$(cat "$build/ingest.jsonl" 2>/dev/null | wc -l)
    exec 5>"$build/xvfb.display"
    Xvfb -displayfd 5 -screen 0 1280x800x24 -nolisten tcp -noreset &
    xvfb=$!
    for _ in $(seq 50); do [[ -s $build/xvfb.display ]] && break; sleep 0.1; done
    export DISPLAY=:$(cat "$build/xvfb.display")
    source scripts/lib/desktop.sh
    start_notifications
    trayer --edge top --align right --widthtype request --height 24 &
    tray=$!
    "$build/src/app/zel-menubar" &
    app=$!
    # The display goes last, and the bus after everything: no client sees either vanish.
    trap "kill $app $tray $notifications 2>/dev/null || true
          wait $app $tray $notifications 2>/dev/null || true
          kill $xvfb 2>/dev/null || true" EXIT
    sleep 4
    icon=$(xdotool search --onlyvisible --classname "^zel-menubar$" | head -1)
    eval "$(xdotool getwindowgeometry --shell "$icon")"
    import -window root "$shots/tray.png"
    xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 1
    sleep 2
    import -window root "$shots/popover.png"
    xdotool click 1
    sleep 1
    xdotool click 3
    sleep 1
    import -window root "$shots/menu.png"
    xdotool key Escape
    # The update check a first start makes, about ten seconds in, offers the simulator'"'"'s
    # newer version.
    for _ in $(seq 150); do
        (( $(dunstctl count displayed 2>/dev/null || echo 0) > 0 )) && break
        sleep 0.1
    done
    import -window root "$shots/notification.png"
    for _ in $(seq 200); do
        (( $(cat "$build/ingest.jsonl" 2>/dev/null | wc -l) > batches )) && break
        sleep 0.1
    done
    echo "screenshots in $shots; analytics in $build/ingest.jsonl"
' headless "$build"
