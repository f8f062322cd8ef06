#!/usr/bin/env bash
# Installs what is missing, builds and runs the test suite.
# Usage: scripts/test.sh [dev|asan|tsan|optimised]
#   (default dev; tsan: the analytics tests only; optimised: RelWithDebInfo, as distributions build)
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-dev}
scripts/install-deps.sh
cmake --preset "$preset"
cmake --build --preset "$preset"
# The QML is held to the compiler's standard: any qmllint warning fails the run.
cmake --build --preset "$preset" --target all_qmllint
ctest --preset "$preset"
