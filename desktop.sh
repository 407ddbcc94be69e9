#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, and starts QGIS with the plugin on the sample basin: ./desktop.sh.
# QGIS gets a profile and settings of its own in demo/desktop, so that yours stay as they are.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
scripts/build.sh release velmora velmoraplugin documents
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "There is no screen to start QGIS on: neither DISPLAY nor WAYLAND_DISPLAY is set." >&2
    exit 1
fi

# demo/ belongs to ./demo.sh, which makes its sample in no folder that is not marked as its own.
if [ ! -e demo ]; then
    mkdir demo
    echo "$PWD/demo" >demo/.velmora-demo
fi
home=$PWD/demo/desktop
profile=$home/profiles/default/QGIS
if [ ! -f "$profile/QGIS3.ini" ]; then
    mkdir -p "$profile"
    cat >"$profile/QGIS3.ini" <<INI
[plugins]
searchPathsForPlugins=$PWD/build/release/lib/qgis

[Plugins]
libvelmoraplugin=true

[qgis]
checkVersion=false
showTips=false
INI
fi
mkdir -p "$home/config"
echo "Starting QGIS on the sample basin in $home/velmora-basin ..."
export XDG_CONFIG_HOME=$home/config VELMORA_SAMPLE=$home/velmora-basin
exec qgis --profiles-path "$home" --nologo --code scripts/open_sample.py
