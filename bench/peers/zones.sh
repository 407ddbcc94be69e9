#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Times polygons to a grid (2,000 polygons) and statistics of a grid by 30 zones at 10,000,000 cells side
# by side with gdal_rasterize, GRASS and exactextract, as far as they are installed: in turn, medians of
# RUNS (5) rounds. Ours, gdal_rasterize and exactextract are whole processes; of GRASS only the modules
# count (v.to.rast; for the zones v.to.rast and r.univar), on maps that it has already.
set -euo pipefail
cd "$(dirname "$0")/../.."

rounds=${RUNS:-5}
bench=$PWD/${BUILD:-build/release}/bin/bench_zones
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$bench" make "$folder"
cd "$folder"
extent="300000 4250000 700000 4500000"

seconds() { # the wall time of a command
    local start end
    start=$(date +%s.%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s.%N)
    awk -v a="$start" -v b="$end" 'BEGIN { printf "%.3f\n", b - a }'
}
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

if command -v grass >/dev/null; then
    grass -c values.tif -e "$folder/grass" >/dev/null 2>&1
    mkdir -p timing
    cat >grass.sh <<'INSIDE'
set -e
r.in.gdal input=values.tif output=values --q
v.in.ogr input=fields.shp output=fields snap=-1 -c --q
v.in.ogr input=zones.shp output=zones snap=-1 -c --q
g.region raster=values --q
wall() { s=$(date +%s.%N); "$@"; e=$(date +%s.%N); awk -v a="$s" -v b="$e" 'BEGIN { printf "%.3f\n", b - a }'; }
for i in $(seq "$ROUNDS"); do
    wall v.to.rast input=fields output=f use=attr attribute_column=KC --o --q >>timing/grass_rasterise
    wall sh -c 'v.to.rast input=zones output=z use=attr attribute_column=ZONE --o --q && r.univar -t map=values zones=z output=stats.txt --o --q' >>timing/grass_zonal
done
INSIDE
    ROUNDS=$rounds grass "$folder/grass/PERMANENT" --exec bash grass.sh >/dev/null 2>grass.log || tail -3 grass.log
fi
mkdir -p timing
for ((i = 0; i < rounds; ++i)); do
    seconds "$bench" rasterise . 1 >>timing/ours1_rasterise
    seconds "$bench" rasterise . 0 >>timing/ours_rasterise
    # shellcheck disable=SC2086
    rm -f out.tif
    seconds gdal_rasterize -q -a KC -tr 100 100 -te $extent -ot Float32 -a_nodata -1 fields.shp out.tif >>timing/gdal_rasterise
    seconds "$bench" zonal . 1 >>timing/ours1_zonal
    seconds "$bench" zonal . 0 >>timing/ours_zonal
    if command -v exactextract >/dev/null; then
        seconds exactextract -r values.tif -p zones.shp -f ZONE -s mean -o out.csv >>timing/exactextract_zonal
    fi
done
for task in rasterise zonal; do
    echo "$task, seconds"
    for program in gdal grass exactextract ours1 ours; do
        [ -s "timing/${program}_$task" ] && printf '  %-14s %7.3f\n' "$program" "$(median "timing/${program}_$task")"
    done
done
"$bench" months . 200000
