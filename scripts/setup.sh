#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages that are missing; silent when all are there. Needs root, or sudo.
set -euo pipefail

packages=(
    g++ cmake ninja-build ccache pkg-config git
    libgdal-dev libsqlite3-dev libgeos-dev mdbtools-dev libeigen3-dev libtbb-dev libcli11-dev libfmt-dev nlohmann-json3-dev libcairo2-dev libproj-dev libssl-dev libxxhash-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    gdal-bin fonts-dejavu-core locales clang-format clang-tidy
    qtbase5-dev libqgis-dev qgis xvfb openbox
    dpkg-dev file binutils python3
)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
    [ "$status" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "These packages are missing, and neither root nor sudo is at hand to install them:" >&2
        echo "  ${missing[*]}" >&2
        exit 1
    }
    sudo=(sudo)
fi
echo "Installing missing packages: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
