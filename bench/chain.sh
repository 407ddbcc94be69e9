#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The whole chain of twelve months at 1,000,000 cells, method 2, elevation-detrended kriging from 60
# stations, 50,000 fields in 30 zones: medians of the seconds that velmora run all gives per step.
# Usage: bench/chain.sh [ROUNDS] [THREADS]; needs a release build.
set -euo pipefail
rounds=${1:-5}
threads=${2:-0}
bin=$(cd "$(dirname "$0")/.." && pwd)/build/release/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$bin/bench_chain" "$work"
velmora() { "$bin/velmora" --quiet --threads "$threads" --settings-folder "$work/settings" "$@"; }
velmora settings apply DEM=dem WeatherStations=stations.shp WeatherData=weather.dbf KcTable=kc.dbf \
    LandCover=fields.shp Zones=zones.shp ZoneField=NAME OutputWorkspace=out \
    ExtentProvider=domain.shp CellSize=100 RefETMethod=2 PrecipitationMethod=EDK TimeStep=Monthly \
    Year=2006 BeginMonth=Jan EndMonth=Dec >/dev/null
for ((round = 0; round <= rounds; round++)); do # the first fills the caches and is not counted
    velmora run all --default-shares crop --cvef 0.9 >log
    [ "$round" -eq 0 ] || awk '$3 == "s" { print $1, $2 }' log >>times
done
echo "seconds, median of $rounds rounds, threads: $([ "$threads" -eq 0 ] && nproc || echo "$threads")"
for step in refet kc cropet ppt nir eff irr all; do
    median=$(awk -v step="$step" '$1 == step { print $2 }' times | sort -n |
        awk '{ t[NR] = $1 } END { print t[int((NR + 1) / 2)] }')
    printf '%-8s%8s\n' "$step" "$median"
done
du -sh out | awk '{ print "output folder:", $1 }'
