#!/usr/bin/env bash
# Builds the fuzz targets and runs each for the given number of seconds (default 60).
# Usage: scripts/fuzz.sh [seconds]
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
scripts/install-deps.sh fuzz
cmake --preset fuzz
cmake --build --preset fuzz

mkdir -p fuzz/findings
for target in fuzz_matches fuzz_scorecard; do
    corpus_name=${target#fuzz_}
    work=$(mktemp -d)
    cp fuzz/corpus/"$corpus_name"/* "$work"/
    echo "== $target for ${seconds}s"
    build/fuzz/fuzz/"$target" "$work" -dict=fuzz/json.dict -max_total_time="$seconds" \
        -max_len=8192 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix=fuzz/findings/"$target"- 2>&1 | tail -n 12
    rm -rf "$work"
done
