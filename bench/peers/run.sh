#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Times the whole reference ET run at 1,000,000 cells side by side with the NumPy pipeline on the same
# input: whole processes in turn, medians of RUNS (5) rounds. Needs python3-numpy and python3-gdal.
set -euo pipefail
cd "$(dirname "$0")/../.."

rounds=${RUNS:-5}
build=${BUILD:-build/release}
basin=$(mktemp -d)
trap 'rm -rf "$basin"' EXIT
"$build/bin/bench_refet_run" --make-basin "$basin"

seconds() { # the wall time of a command
    local start end
    start=$(date +%s.%N)
    "$@" >/dev/null
    end=$(date +%s.%N)
    awk -v a="$start" -v b="$end" 'BEGIN { printf "%.3f\n", b - a }'
}
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for ((i = 0; i < rounds; ++i)); do
    seconds "$build/bin/velmora" --settings-folder "$basin/settings" --quiet run refet >>"$basin/velmora"
    seconds "$build/bin/velmora" --settings-folder "$basin/settings" --quiet --threads 1 run refet >>"$basin/velmora1"
    seconds /usr/bin/python3 bench/peers/chain_numpy.py "$basin" "$basin/numpy_out" >>"$basin/numpy"
done
v=$(median <"$basin/velmora") v1=$(median <"$basin/velmora1") n=$(median <"$basin/numpy")
awk -v v="$v" -v v1="$v1" -v n="$n" 'BEGIN {
    printf "NumPy pipeline, two threads, no work database  %7.3f s\n", n
    printf "velmora run refet, one thread                  %7.3f s   %4.1f times as fast\n", v1, n / v1
    printf "velmora run refet, all threads                 %7.3f s   %4.1f times as fast\n", v, n / v }'
