#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Starts the real QGIS with the real plugin on a screen of its own and lets the driver plugin use it:
# desktop_test.sh chain|reload BUILD OUT. The chain's grids and zone tables are compared with those of the
# command line, byte for byte. Exit status 77: QGIS or the screen is not there.
set -euo pipefail
mode=$1
build=$(cd "$2" && pwd)
out=$3

for program in qgis Xvfb openbox; do
    command -v "$program" >/dev/null || {
        echo "Skipped: $program is not installed"
        exit 77
    }
done

rm -rf "$out"
mkdir -p "$out/pictures" "$out/run" "$out/home"
out=$(cd "$out" && pwd)
chmod 700 "$out/run"
# Its name stands in the pictures; DESKTOP_BASIN gives another one.
work=${DESKTOP_BASIN:-$(mktemp -d /tmp/basin-XXXXXX)}
mkdir -p "$work"
[ -z "$(ls -A "$work")" ] || {
    echo "$work is not empty, and it would be deleted"
    exit 1
}
stop() {
    kill "${pids[@]}" 2>/dev/null || true
    rm -rf "$work"
}
pids=()
trap stop EXIT

profile=$out/profiles/default/QGIS
mkdir -p "$profile"
active="libvelmoraplugin=true"
[ "$mode" = reload ] && active="libvelmoraplugin=false"
cat >"$profile/QGIS3.ini" <<INI
[plugins]
searchPathsForPlugins=$build/lib/qgis|$build/lib/qgis-driver

[Plugins]
$active
libvelmoradriver=true

[qgis]
checkVersion=false
showTips=false

[app]
projections\newProjectCrsBehavior=UseCrsOfFirstLayer
INI

"$build/bin/velmora" --quiet demo "$work" --inputs-only >/dev/null

# Xvfb chooses a free display itself and tells its number.
exec 3< <(exec Xvfb -displayfd 1 -screen 0 1300x900x24 -nolisten tcp 2>/dev/null)
pids+=($!)
read -r -t 30 display <&3
export DISPLAY=:$display
export HOME=$out/home XDG_CONFIG_HOME=$out/home/config XDG_RUNTIME_DIR=$out/run
export XDG_DATA_HOME=$out/home/data XDG_CACHE_HOME=$out/home/cache
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME"
openbox >/dev/null 2>&1 &
pids+=($!)

export VELMORA_DRIVER_MODE=$mode VELMORA_DRIVER_IN=$work VELMORA_DRIVER_OUT=$out/pictures
export VELMORA_DRIVER_PLUGIN=$build/lib/qgis/libvelmoraplugin.so
export VELMORA_DRIVER_LIBRARY=$build/lib/libVelmora.so
export QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8
status=0
(cd "$work" && timeout "${DESKTOP_TIMEOUT:-300}" qgis --profiles-path "$out" --nologo --noversioncheck) >"$out/qgis.log" 2>&1 || status=$?

report=$out/pictures/report.txt
if [ "$status" -ne 0 ] || [ ! -s "$report" ]; then
    echo "QGIS ended with status $status"
    tail -30 "$out/qgis.log"
    [ -s "$report" ] && cat "$report"
    exit 1
fi
tail -1 "$report"
if grep -q '^FAILED' "$report"; then
    grep '^FAILED' "$report"
    exit 1
fi
[ "$mode" = chain ] || exit 0

# The same job by the command, over a copy of the inputs.
command=$work-command
trap 'rm -rf "$command"; stop' EXIT
"$build/bin/velmora" --quiet demo "$command" --inputs-only >/dev/null
"$build/bin/velmora" --quiet --yes --settings-folder "$command/settings" run all \
    --default-shares zone --cvef 0.9 >/dev/null
different=0
compared=0
while read -r file; do
    name=${file#"$command/output/"}
    case $name in GridOP.mdb | velmora_runs.json | velmora_made_*.txt | velmora_record_*.json | *.prj | Lu_Intersected.*) continue ;; esac
    compared=$((compared + 1))
    cmp -s "$file" "$work/output/$name" || {
        echo "output/$name differs from the command's"
        different=1
    }
done < <(find "$command/output" -type f)
echo "$compared files are the same as the command's"
[ "$compared" -gt 500 ] || different=1
exit $different
