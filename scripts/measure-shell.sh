#!/usr/bin/env bash
# Measures the shell's figures with the demo build under Xvfb, a private session bus and a
# StatusNotifierWatcher: start to first title on the bus, click to the popover's first frame,
# resident memory after a minute idle with the popover made, and CPU time while idle.
#
# Usage: scripts/measure-shell.sh [IDLE_MINUTES] [alerts]   (default 10; "alerts" turns every
# match alert on, with dunst as the notification server)
set -euo pipefail
cd "$(dirname "$0")/.."
minutes=${1:-10}
alerts=${2:-}

scripts/install-deps.sh
cmake --preset demo >/dev/null
cmake --build --preset demo --target zel-menubar zel-league-sim >/dev/null

dbus-run-session -- bash -c '
    set -euo pipefail
    build=build/demo
    minutes=$1
    source scripts/lib/desktop.sh
    start_desktop
    if [[ $2 == alerts ]]; then
        mkdir -p "$work/config/ZelMenuBar"
        printf "[notify]\nstarts=true\nwickets=true\nresults=true\n" > "$work/config/ZelMenuBar/settings.ini"
        dunst >/dev/null 2>&1 & pids+=($!)
    fi
    # Nothing live: the idle figures are for a quiet league day.
    $build/tools/league-sim/zel-league-sim --scenario no-match-today >/dev/null & pids+=($!)
    sleep 1
    dbus-monitor "type=signal,member=XAyatanaNewLabel" > "$work/signals" 2>/dev/null & pids+=($!)
    sleep 0.5

    start=$(date +%s.%N)
    QT_LOGGING_RULES="zel.timing.debug=true" $build/src/app/zel-menubar 2>"$work/app.log" &
    app=$!
    pids+=($app)
    for _ in $(seq 100); do grep -q "member=XAyatanaNewLabel" "$work/signals" && break; sleep 0.05; done
    first=$(grep -m1 "member=XAyatanaNewLabel" "$work/signals" | grep -o "time=[0-9.]*" | cut -d= -f2)
    echo "start to first title on the bus: $(echo "($first - $start) * 1000" | bc -l | xargs printf "%.0f") ms"

    item=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.ListNames \
        | grep -o "org.kde.StatusNotifierItem-[0-9-]*")
    for _ in $(seq 20); do
        dbus-send --session --type=method_call --dest="$item" /StatusNotifierItem \
            org.kde.StatusNotifierItem.Activate int32:640 int32:24
        sleep 0.4
    done
    grep -o "frame [0-9.]* ms" "$work/app.log" | awk "{print \$2}" | sort -n \
        | awk "{v[NR]=\$1} END {printf \"click to first frame: median %.2f ms, max %.2f ms over %d openings\n\", v[int((NR+1)/2)], v[NR], NR}"

    sleep 60
    echo "resident after 60 s idle, popover made: $(awk "/VmRSS/ {printf \"%.1f MB\", \$2/1024}" /proc/$app/status)"
    ticks=$(getconf CLK_TCK)
    cpu() { awk "{print \$14 + \$15}" /proc/$app/stat; }
    before=$(cpu)
    sleep $((minutes * 60))
    after=$(cpu)
    echo "CPU over $minutes idle minutes: $(echo "($after - $before) / $ticks" | bc -l | xargs printf "%.2f") s"
' measure "$minutes" "$alerts"
