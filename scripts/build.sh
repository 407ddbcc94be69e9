#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds one preset: scripts/build.sh PRESET [TARGET ...]. Says nothing but its own line
# when nothing changed; shows the whole output when the build fails.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
targets=()
[ $# -gt 0 ] && targets=(--target "$@")

log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "Building ($preset) ..."
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "The build ($preset) failed." >&2
    exit 1
fi
