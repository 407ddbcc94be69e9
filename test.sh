#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, and runs the tests: ./test.sh [PRESET], release by default; asan
# runs them under the address and undefined behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")"

preset=${1:-release}
scripts/setup.sh
scripts/build.sh "$preset"
echo "Testing ($preset) ..."
exec ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)"
