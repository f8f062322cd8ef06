#!/usr/bin/env bash
# The app's resident memory beside the floor's (bench/floor: a bare Qt Quick tray app), both
# Release builds, run side by side under Xvfb, a private session bus and a StatusNotifierWatcher.
# Each has its window opened and closed twice through the status item, then idles; the script
# prints both figures, their ratio, threads, the app's click-to-first-frame and its idle CPU.
#
# Usage: scripts/measure-memory.sh [SCENARIO] [IDLE_SECONDS]
#   (default no-match-today, a quiet league day, and 30 s; "season" is a full league day)
set -euo pipefail
cd "$(dirname "$0")/.."
scenario=${1:-no-match-today}
idle=${2:-30}

scripts/install-deps.sh
cmake --preset measure >/dev/null
cmake --build --preset measure --target zel-menubar zel-league-sim tray_floor >/dev/null

dbus-run-session -- bash -c '
    set -euo pipefail
    build=build/measure
    scenario=$1
    idle=$2
    source scripts/lib/desktop.sh
    start_desktop
    $build/tools/league-sim/zel-league-sim --scenario "$scenario" >/dev/null & pids+=($!)
    sleep 1

    QT_LOGGING_RULES="zel.timing.debug=true" $build/src/app/zel-menubar 2>"$work/app.log" &
    app=$!
    pids+=($app)
    $build/bench/tray_floor 2>/dev/null &
    floor=$!
    pids+=($floor)

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
    sleep 3 # the first loads
    for _ in 1 2; do
        click "$app_item"; click "$floor_item"; sleep 1
        click "$app_item"; click "$floor_item"; sleep 1
    done

    ticks=$(getconf CLK_TCK)
    cpu() { awk "{print \$14 + \$15}" /proc/$1/stat; }
    before=$(cpu $app)
    sleep "$idle"
    after=$(cpu $app)

    rss() { awk "/VmRSS/ {print \$2}" /proc/$1/status; }
    threads() { awk "/Threads/ {print \$2}" /proc/$1/status; }
    app_rss=$(rss $app)
    floor_rss=$(rss $floor)
    printf "%-6s resident %6.1f MB, %2d threads\n" app "$(echo "$app_rss / 1024" | bc -l)" "$(threads $app)"
    printf "%-6s resident %6.1f MB, %2d threads\n" floor "$(echo "$floor_rss / 1024" | bc -l)" "$(threads $floor)"
    printf "ratio  %.3f\n" "$(echo "$app_rss / $floor_rss" | bc -l)"
    grep -o "frame [0-9.]* ms" "$work/app.log" | awk "{print \$2}" | sort -n \
        | awk "{v[NR]=\$1} END {printf \"app click to first frame: median %.2f ms over %d openings\n\", v[int((NR+1)/2)], NR}"
    echo "app CPU over $idle idle seconds: $(echo "($after - $before) / $ticks" | bc -l | xargs printf "%.2f") s"
    if [[ -n ${ZEL_SMAPS:-} ]]; then
        cp /proc/$app/smaps "$ZEL_SMAPS.app"
        cp /proc/$floor/smaps "$ZEL_SMAPS.floor"
    fi
' measure "$scenario" "$idle"
