#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Twelve months of precipitation at 1,000,000 cells, elevation-detrended kriging from more and more
# stations: medians of the seconds and processor seconds of whole processes, and their peak memory.
# With another build's velmora, the two run in turn.
# Usage: bench/stations.sh ROUNDS "STATIONS ..." [OTHER_VELMORA]; needs a release build.
set -euo pipefail
rounds=${1:-5}
counts=${2:-60 600 2500 10000 30000}
bin=$(cd "$(dirname "$0")/.." && pwd)/build/release/bin
programs=("$bin/velmora")
[ $# -lt 3 ] || programs+=("$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
median() { sort -n | awk '{ t[NR] = $1 } END { print t[int((NR + 1) / 2)] }'; }
printf '%-10s%10s%10s%8s  %s\n' stations seconds processor MB program
for count in $counts; do
    folder=$work/$count
    mkdir "$folder"
    "$bin/bench_chain" "$folder" "$count"
    cd "$folder"
    "$bin/velmora" --quiet --settings-folder settings settings apply DEM=dem WeatherStations=stations.shp \
        WeatherData=weather.dbf OutputWorkspace=out ExtentProvider=domain.shp CellSize=100 RefETMethod=2 \
        PrecipitationMethod=EDK TimeStep=Monthly Year=2006 BeginMonth=Jan EndMonth=Dec >/dev/null
    for ((round = 0; round < rounds; round++)); do
        for i in "${!programs[@]}"; do
            /usr/bin/time -f '%e %U %S %M' -o once "${programs[$i]}" --quiet --settings-folder settings \
                run ppt >/dev/null 2>log
            tail -n 1 once >>"times$i"
        done
    done
    for i in "${!programs[@]}"; do
        printf '%-10s%10s%10s%8s  %s\n' "$count" "$(awk '{ print $1 }' "times$i" | median)" \
            "$(awk '{ print $2 + $3 }' "times$i" | median)" \
            "$(awk '{ print int($4 / 1024) }' "times$i" | median)" "${programs[$i]}"
    done
    cd "$work"
    rm -rf "$folder"
done
