#!/usr/bin/env bash
# The app's resident memory beside two floors' (bench/floor): a bare Qt Quick tray app, and the
# same with what any score app of this kind loads (an HTTP poll of the score list, an SVG icon,
# a bold title with the bat emoji). All Release builds, run side by side under Xvfb, a private
# session bus and a StatusNotifierWatcher. Each has its window opened and closed twice through
# the status item, then idles; a round gives the resident sizes, their threads, the app's
# click-to-first-frame and its idle CPU.
# Resident sizes move by a megabyte or two between rounds (what has loaded by then), so the
# script runs several and prints each round and the medians.
#
# Usage: scripts/measure-memory.sh [SCENARIO] [IDLE_SECONDS] [ROUNDS]
#   (default no-match-today, a quiet league day; 30 s; 3 rounds. "season" is a full league day)
set -euo pipefail
cd "$(dirname "$0")/.."
scenario=${1:-no-match-today}
idle=${2:-30}
rounds=${3:-3}

scripts/install-deps.sh
cmake --preset measure >/dev/null
cmake --build --preset measure --target zel-menubar zel-league-sim tray_floor >/dev/null

results=$(mktemp)
trap 'rm -f "$results"' EXIT
for round in $(seq "$rounds"); do
dbus-run-session -- bash -c '
    set -euo pipefail
    build=build/measure
    scenario=$1
    idle=$2
    source scripts/lib/desktop.sh
    start_desktop
    # Its own port, so that a demo or a soak run beside it is not what the app reads.
    $build/tools/league-sim/zel-league-sim --port 8766 --scenario "$scenario" >/dev/null & pids+=($!)
    sleep 1

    QT_LOGGING_RULES="zel.timing.debug=true" $build/src/app/zel-menubar 2>"$work/app.log" &
    app=$!
    pids+=($app)
    $build/bench/tray_floor 2>/dev/null &
    floor=$!
    pids+=($floor)
    $build/bench/tray_floor --features 2>/dev/null &
    feature=$!
    pids+=($feature)

    # The bus name of the status item of that process: its own well-known name, or, as Qt'"'"'s tray
    # icon registers, its connection'"'"'s unique name.
    item_of() {
        for _ in $(seq 100); do
            for name in $(dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
                org.freedesktop.DBus.ListNames | grep -o "\"[^\"]*\"" | tr -d "\""); do
                [[ $name == org.kde.StatusNotifierItem-$1-* ]] && { echo "$name"; return; }
            done
            for name in $(dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher \
                /StatusNotifierWatcher org.freedesktop.DBus.Properties.Get \
                string:org.kde.StatusNotifierWatcher string:RegisteredStatusNotifierItems \
                | grep -o "\":[^\"]*\"" | tr -d "\""); do
                pid=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
                    org.freedesktop.DBus.GetConnectionUnixProcessID string:"$name" | awk "/uint32/ {print \$2}")
                [[ $pid == "$1" ]] && { echo "$name"; return; }
            done
            sleep 0.1
        done
        echo "no status item for $1" >&2
        exit 1
    }
    click() {
        dbus-send --session --type=method_call --dest="$1" /StatusNotifierItem \
            org.kde.StatusNotifierItem.Activate int32:640 int32:24
    }
    app_item=$(item_of $app)
    floor_item=$(item_of $floor)
    feature_item=$(item_of $feature)
    sleep 3 # the first loads
    for _ in 1 2; do
        for shown in 1 2; do
            for item in "$app_item" "$floor_item" "$feature_item"; do click "$item"; done
            sleep 1
        done
    done

    ticks=$(getconf CLK_TCK)
    cpu() { awk "{print \$14 + \$15}" /proc/$1/stat; }
    before=$(cpu $app)
    sleep "$idle"
    after=$(cpu $app)

    rss() { awk "/VmRSS/ {print \$2}" /proc/$1/status; }
    threads() { awk "/Threads/ {print \$2}" /proc/$1/status; }
    frame=$(grep -o "frame [0-9.]* ms" "$work/app.log" | awk "{print \$2}" | sort -n \
        | awk "{v[NR]=\$1} END {print (NR ? v[int((NR+1)/2)] : 0)}")
    # KiB of the app, the bare floor and the feature floor, their threads, click-to-frame ms,
    # idle CPU s
    echo "round $(rss $app) $(rss $floor) $(rss $feature) $(threads $app) $(threads $floor)" \
        "$(threads $feature) $frame" \
        "$(echo "($after - $before) / $ticks" | bc -l)"
    if [[ -n ${ZEL_SMAPS:-} ]]; then
        cp /proc/$app/smaps "$ZEL_SMAPS.app"
        cp /proc/$floor/smaps "$ZEL_SMAPS.floor"
        cp /proc/$feature/smaps "$ZEL_SMAPS.feature"
    fi
' measure "$scenario" "$idle" >>"$results"
grep "^round " "$results" | tail -n1 | awk -v r="$round" \
    '{printf "round %d: app %.1f MB (%d threads), feature floor %.1f MB (%d threads), bare floor %.1f MB (%d threads); ratios %.3f and %.3f\n", r, $2 / 1024, $5, $4 / 1024, $7, $3 / 1024, $6, $2 / $4, $2 / $3}'
done
median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }
rows() { grep "^round " "$results" | awk "{print $1}"; }
app=$(rows '$2' | median)
floor=$(rows '$3' | median)
feature=$(rows '$4' | median)
printf "median: app %.1f MB, feature floor %.1f MB (ratio %.3f), bare floor %.1f MB (ratio %.3f)\n" \
    "$(echo "$app / 1024" | bc -l)" "$(echo "$feature / 1024" | bc -l)" "$(rows '$2 / $4' | median)" \
    "$(echo "$floor / 1024" | bc -l)" "$(rows '$2 / $3' | median)"
printf "app click to first frame: median %.2f ms; CPU over %s idle seconds: median %.2f s\n" \
    "$(rows '$8' | median)" "$idle" "$(rows '$9' | median)"
