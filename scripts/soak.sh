#!/usr/bin/env bash
# Runs the app (demo build) against a misbehaving league simulator for a set time, under Xvfb, a
# private session bus and a StatusNotifierWatcher, and prints every minute the app's resident
# memory, its CPU time, how long the status item took to answer a D-Bus call, and its label.
# Not part of the test suite.
#
# Usage: scripts/soak.sh [MINUTES]   (default 30)
set -euo pipefail
cd "$(dirname "$0")/.."
minutes=${1:-30}

scripts/install-deps.sh
cmake --preset demo >/dev/null
cmake --build --preset demo --target zel-menubar zel-league-sim >/dev/null

dbus-run-session -- bash -c '
    set -euo pipefail
    build=build/demo
    minutes=$1
    source scripts/lib/desktop.sh
    start_desktop
    # A live match (polled every 30 s), and a service that fails in every way it can, about one
    # request in eight: much more, and the back-off after failed reloads holds the label for minutes.
    $build/tools/league-sim/zel-league-sim --scenario live-first-innings \
        --fail-rate 0.05 --drop-rate 0.02 --garbage-rate 0.02 --endless-rate 0.02 \
        --trickle-rate 0.02 --latency 200 >/dev/null &
    pids+=($!)
    sleep 1
    $build/src/app/zel-menubar 2>"$work/app.log" &
    app=$!
    pids+=($app)
    ticks=$(getconf CLK_TCK)
    printf "%-7s %-9s %-8s %-9s %s\n" minute rss_mb cpu_s dbus_ms label
    for minute in $(seq 0 "$minutes"); do
        [[ $minute -gt 0 ]] && sleep 60
        if ! kill -0 $app 2>/dev/null; then echo "the app is gone"; exit 1; fi
        rss=$(awk "/VmRSS/ { printf \"%.1f\", \$2 / 1024 }" /proc/$app/status)
        cpu=$(awk -v t=$ticks "{ printf \"%.1f\", (\$14 + \$15) / t }" /proc/$app/stat)
        start=$(date +%s%N)
        label=$(timeout 5 gdbus call --session --dest org.kde.StatusNotifierItem-$app-1 \
            --object-path /StatusNotifierItem --method org.freedesktop.DBus.Properties.Get \
            org.kde.StatusNotifierItem XAyatanaLabel 2>&1 || echo "(no answer)")
        took=$(( ($(date +%s%N) - start) / 1000000 ))
        printf "%-7s %-9s %-8s %-9s %s\n" "$minute" "$rss" "$cpu" "$took" "$label"
    done
    kill -TERM $app
    wait $app && echo "SIGTERM: exit status 0" || echo "SIGTERM: exit status $?"
' bash "$minutes"
