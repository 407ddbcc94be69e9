#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Lets system calls of the steps fail, or kills the steps in them, and looks how that ends:
# scripts/faults.sh [POINTS] [SEED], 2000 points and seed 1 by default. Or one point again, as the list of
# those that did not end as they should names it: scripts/faults.sh --only STEP:CALL:ERROR:NUMBER [--keep].
# The list is also in build/release/faults.txt.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release velmora Velmora faults
bin=build/release/bin
if [ "${1:-}" = --only ]; then
    exec "$bin/faults" "$bin/velmora" "$@"
fi
exec "$bin/faults" "$bin/velmora" --points "${1:-2000}" --seed "${2:-1}" --processes "$(nproc)" \
    --list build/release/faults.txt
