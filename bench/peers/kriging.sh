#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Times ordinary kriging of 1,000,000 cells from 60 and from 600 stations, 12 nearest, side by side with
# gstat's krige(nmax = 12) on the same stations with the same model: in turn, medians of RUNS (3) rounds,
# each in a fresh process. Ours counts the fit of the model and the writing of the grid, gstat's krige()
# alone. Needs r-cran-gstat.
set -euo pipefail
cd "$(dirname "$0")/../.."

rounds=${RUNS:-3}
bench=${BUILD:-build/release}/bin/bench_kriging
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for stations in 60 600; do
    "$bench" make "$folder" $stations
    for ((i = 0; i < rounds; ++i)); do
        "$bench" time "$folder" $stations 1 >>"$folder/one$stations"
        "$bench" time "$folder" $stations 0 >>"$folder/all$stations"
        Rscript bench/peers/kriging_gstat.R "$folder" $stations >>"$folder/gstat$stations"
    done
    awk -v n=$stations -v g="$(median <"$folder/gstat$stations")" -v o="$(median <"$folder/one$stations")" \
        -v a="$(median <"$folder/all$stations")" -v d="$("$bench" compare "$folder" $stations)" 'BEGIN {
        printf "%d stations\n", n
        printf "  gstat krige(nmax = 12)  %8.3f s %8.2f M cells/s\n", g, 1 / g
        printf "  velmora, one thread     %8.3f s %8.2f M cells/s  %5.0f times as fast\n", o, 1 / o, g / o
        printf "  velmora, all threads    %8.3f s %8.2f M cells/s  %5.0f times as fast\n", a, 1 / a, g / a
        printf "  largest difference      %s of the range\n", d }'
done
