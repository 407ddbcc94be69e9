#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs into an empty folder and uses what lies there: the command with its library, the manual page,
# the guide, the sample, and the plugin where one is built.
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
export XDG_CONFIG_HOME=$prefix/config

"$prefix/bin/velmora" commands | grep -q "Calculate Reference ET"
grep -q "$prefix/lib" "$XDG_CONFIG_HOME/velmora/classes.txt"
wanted=(share/man/man1/velmora.1 share/doc/velmora/user-guide.md share/doc/velmora/LICENSE
    share/doc/velmora/pictures/report.png share/velmora/sample/stations.shp share/velmora/sample/dem/hdr.adf)
[ -e "$build/lib/qgis" ] && wanted+=(lib/qgis/plugins/libvelmoraplugin.so)
for file in "${wanted[@]}"; do
    [ -s "$prefix/$file" ] || {
        echo "$file is not installed"
        exit 1
    }
done
if grep -rqF "$build" "$prefix/share"; then
    echo "an installed file names the build folder:"
    grep -rlF "$build" "$prefix/share"
    exit 1
fi

# The sample runs where it is installed, with output elsewhere.
sample=$prefix/share/velmora/sample
mkdir "$prefix/out"
"$prefix/bin/velmora" --quiet settings apply DEM="$sample/dem" WeatherStations="$sample/stations.shp" \
    WeatherData="$sample/weather.dbf" ExtentProvider="$sample/domain.shp" OutputWorkspace="$prefix/out" \
    CellSize=2000 RefETMethod=2 Year=2023 BeginMonth=Jul EndMonth=Jul >/dev/null
"$prefix/bin/velmora" --quiet run refet >/dev/null
[ -s "$prefix/out/RefET_Jul_2/hdr.adf" ]
