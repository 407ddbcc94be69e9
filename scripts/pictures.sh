#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the pictures of the desktop that the documents show, with the test that uses QGIS.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release
made=build/release/desktop-pictures
DESKTOP_BASIN=/srv/basin tests/hosts/qgis/desktop_test.sh chain build/release "$made"
for name in menu-et menu-irrigation sample-basin settings-basic-data settings-extent-and-period \
    settings-reference-et settings-precipitation dataset-browser progress-monitor kc-map-maker \
    offered-copies efficiency zonal-results zonal-results-account map-refet-july map-irr-july; do
    cp "$made/pictures/$name.png" "docs/pictures/desktop-$name.png"
done
