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
ctest --preset "$preset"
