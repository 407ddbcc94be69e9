#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on an include that the plan of the house forbids: arrows run hosts -> shell -> steps ->
# settings -> gis and platform -> gis, steps do not know each other, and only platform/ and hosts/
# know libraries.
set -euo pipefail
cd "$1"

declare -A allowed=(
    [gis]="gis"
    [settings]="settings gis"
    [refet]="refet settings gis"
    [crop]="crop settings gis"
    [precip]="precip settings gis"
    [irrigation]="irrigation settings gis"
    [shell]="shell refet crop precip irrigation settings gis"
    [platform]="platform gis"
    [hosts]="hosts shell refet crop precip irrigation settings gis platform examples"
)
libraries='(gdal|ogr|ogrsf|cpl_|proj|geos|sqlite3|mdb|Eigen|tbb/|oneapi/|CLI/|fmt/|nlohmann|cairo|Q[A-Z]|qgs)'
bad=0

complain() {
    echo "$1"
    bad=1
}

for folder in src/*/; do
    name=$(basename "$folder")
    [ -n "${allowed[$name]:-}" ] || complain "src/$name is no folder of the plan"
    while IFS=: read -r file line text; do
        target=$(sed -E 's/.*"([^"]+)".*/\1/' <<<"$text")
        first=${target%%/*}
        [ "$first" = "$target" ] && continue # a header of the same folder, or a generated one
        case " ${allowed[$name]:-} " in
            *" $first "*) ;;
            *) complain "$file:$line: $name/ may not include $target" ;;
        esac
    done < <(grep -rnE '^#include "' "$folder" --include='*.h' --include='*.cpp')
    case $name in platform | hosts) continue ;; esac
    while IFS=: read -r file line text; do
        complain "$file:$line: only platform/ and hosts/ know libraries: $text"
    done < <(grep -rnE "^#include <$libraries" "$folder" --include='*.h' --include='*.cpp')
done
exit $bad
