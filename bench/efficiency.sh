#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The efficiency step alone, map and tables, for so many fields in so many zones: medians of the seconds
# and processor seconds of whole processes, and their peak memory. With another build's velmora, the two
# run in turn; the pieces and the map that they make are compared.
# Usage: bench/efficiency.sh ROUNDS FIELDS ZONES [OTHER_VELMORA]; needs a release build.
set -euo pipefail
rounds=${1:-5}
fields=${2:-50000}
zones=${3:-30}
bin=$(cd "$(dirname "$0")/.." && pwd)/build/release/bin
programs=("$bin/velmora")
[ $# -lt 4 ] || programs+=("$4")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
median() { sort -n | awk '{ t[NR] = $1 } END { print t[int((NR + 1) / 2)] }'; }
cd "$work"
"$bin/bench_chain" "$work" 60 "$fields" "$zones"
"$bin/velmora" --quiet --settings-folder settings settings apply DEM=dem KcTable=kc.dbf LandCover=fields.shp \
    WeatherStations=stations.shp WeatherData=weather.dbf PrecipitationMethod=EDK TimeStep=Monthly \
    Zones=zones.shp ZoneField=NAME OutputWorkspace=out ExtentProvider=domain.shp CellSize=100 RefETMethod=2 \
    Year=2006 BeginMonth=Jan EndMonth=Dec >/dev/null
"$bin/velmora" --quiet --settings-folder settings irdb create >/dev/null 2>&1
sums=
for ((round = 0; round <= rounds; round++)); do # the first fills the caches and is not counted
    for i in "${!programs[@]}"; do
        /usr/bin/time -f '%e %U %S %M' -o once "${programs[$i]}" --quiet --settings-folder settings \
            run eff --default-shares crop --cvef 0.9 >/dev/null 2>log
        [ "$round" -eq 0 ] || tail -n 1 once >>"times$i"
        made=$(cat out/Lu_Intersected.* out/IREF/* | md5sum)
        [ -z "$sums" ] || [ "$sums" = "$made" ] || echo "${programs[$i]} has made something else"
        sums=$made
    done
done
printf '%10s%10s%8s  %s\n' seconds processor MB program
for i in "${!programs[@]}"; do
    printf '%10s%10s%8s  %s\n' "$(awk '{ print $1 }' "times$i" | median)" \
        "$(awk '{ print $2 + $3 }' "times$i" | median)" \
        "$(awk '{ print int($4 / 1024) }' "times$i" | median)" "${programs[$i]}"
done
