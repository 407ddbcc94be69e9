#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on an include that the plan of the house forbids (docs/architecture.md): every room names the rooms
# that it may include; only platform/ knows libraries, and hosts/ those of a command line and of a window;
# only they know POSIX. Prints one line a room: its files, and the rooms that it includes.
set -euo pipefail
cd "$1"

steps="refet crop precip irrigation"
below_hosts="gis forms settings modelling $steps check shell"
declare -A allowed=(
    [gis]=""
    [forms]="gis"
    [settings]="forms gis"
    [modelling]="settings gis"
    [refet]="modelling settings gis"
    [crop]="modelling settings forms gis"
    [precip]="modelling settings gis"
    [irrigation]="modelling settings forms gis"
    [check]="$steps modelling settings gis"
    [shell]="$steps modelling settings forms gis"
    [platform]="gis platform/threads platform/files platform/tables platform/records platform/features platform/grid platform/analysis"
    [platform/threads]="gis"
    [platform/files]="platform/threads gis"
    [platform/tables]="platform/files platform/threads gis"
    [platform/records]="platform/tables platform/files platform/threads gis"
    [platform/features]="platform/tables platform/files platform/threads gis"
    [platform/grid]="platform/features platform/files platform/threads gis"
    [platform/analysis]="platform/grid platform/features platform/files platform/threads gis"
    [hosts/components]="shell settings gis"
    [hosts/results]="$below_hosts"
    [hosts/chain]="hosts/results hosts/components $below_hosts"
    [hosts/cli]="hosts/chain hosts/results hosts/components $below_hosts platform examples"
    [hosts/qgis/widgets]="hosts/chain hosts/results hosts/components $below_hosts platform"
    [hosts/qgis/plugin]="hosts/qgis/widgets hosts/chain hosts/results hosts/components $below_hosts platform examples"
)
libraries='(gdal|ogr|ogrsf|cpl_|proj|geos|sqlite3|mdb|openssl|xxhash|Eigen|tbb/|oneapi/|CLI/|fmt/|nlohmann|cairo|Q[A-Z]|qgs)'
posix='(unistd|fcntl|dlfcn|dirent|poll|pwd|pthread|signal|termios|sys/[a-z]+)\.h>'
# What hosts may know beside the standard library and POSIX.
host_libraries='(CLI/|fmt/|nlohmann|cairo|Q[A-Z]|qgs)'
bad=0

complain() {
    echo "$1"
    bad=1
}

# The room of a path below src/: the longest row that it begins with.
room_of() {
    local path=${1%/*}
    until [ -n "${allowed[$path]+row}" ]; do
        [[ $path == */* ]] || return 1
        path=${path%/*}
    done
    echo "$path"
}

declare -A files used
while read -r file; do
    room=$(room_of "${file#src/}") || {
        complain "$file is in no room of the plan"
        continue
    }
    files[$room]=$((${files[$room]:-0} + 1))
    while IFS=: read -r line text; do
        if [[ $text == '#include "'* ]]; then
            target=${text#*\"}
            target=${target%%\"*}
            [[ $target == */* ]] || continue # generated
            other=$target
            [[ $target == examples/* ]] && other=examples
            [ $other = examples ] || other=$(room_of "$target") || other=$target
            [ "$other" = "$room" ] && continue
            case " ${allowed[$room]} " in
                *" $other "*) [[ " ${used[$room]:-} " == *" $other "* ]] || used[$room]+=" $other" ;;
                *) complain "$file:$line: $room may not include $target" ;;
            esac
        elif [[ $text =~ ^\#include\ \<$posix ]]; then
            case $room in platform* | hosts*) ;; *)
                complain "$file:$line: only platform/ and hosts/ know POSIX: $text"
                ;;
            esac
        elif [[ $text =~ ^\#include\ \<$libraries ]]; then
            case $room in
                platform*) ;;
                hosts*) [[ $text =~ ^\#include\ \<$host_libraries ]] ||
                    complain "$file:$line: only platform/ knows this library: $text" ;;
                *) complain "$file:$line: only platform/ and hosts/ know libraries: $text" ;;
            esac
        fi
    done < <(grep -nE '^#include [<"]' "$file" || true)
done < <(find src -name '*.h' -o -name '*.cpp' | sort)

for room in "${!files[@]}"; do
    printf '%-18s %3d files  ->%s\n' "$room" "${files[$room]}" "${used[$room]:- nothing}"
done | sort
exit $bad
