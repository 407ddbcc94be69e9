#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the preset core where no library of the platform or of a host is to be found, and runs its tests:
# core.sh SOURCES BUILD. CMake's packages and pkg-config are hidden, and whoever includes a header of
# such a library gets an error. Works in SOURCES/build/core; BUILD, the build of which it is a check,
# keeps the headers.
set -euo pipefail
sources=$1
hidden=$2/core-hidden

packages=(GDAL SQLite3 Eigen3 TBB CLI11 fmt nlohmann_json PkgConfig Qt5 Qt6 benchmark)
headers=(gdal.h gdal_priv.h gdal_utils.h gdalwarper.h ogr_api.h ogr_core.h ogr_spatialref.h ogrsf_frmts.h
    cpl_conv.h cpl_error.h cpl_string.h cpl_vsi.h cpl_port.h proj.h geos_c.h sqlite3.h mdbtools.h mdbsql.h
    Eigen/Core Eigen/Dense cairo.h QtCore QtWidgets QString QObject QWidget QApplication
    qgis.h qgsapplication.h qgisinterface.h qgisplugin.h)
# ... and what of them lies in folders where a compiler looks by itself.
for folder in gdal eigen3 tbb oneapi CLI fmt nlohmann cairo benchmark; do
    [ ! -d "/usr/include/$folder" ] ||
        mapfile -t -O "${#headers[@]}" headers < <(cd /usr/include && find "$folder" -type f)
done

disabled=()
for package in "${packages[@]}"; do disabled+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON"); done

rm -rf "$hidden"
mkdir -p "$hidden"
for header in "${headers[@]}"; do
    [[ $header != */* ]] || mkdir -p "$hidden/${header%/*}"
    echo "#error \"the extension's rooms know no library, not $header\"" >"$hidden/$header"
done
# What stands in the folder must be what the compiler takes.
if echo '#include <sqlite3.h>' | ${CXX:-g++} "-I$hidden" -fsyntax-only -xc++ - 2>/dev/null; then
    echo "the hidden headers are not hidden"
    exit 1
fi

cd "$sources"
export PKG_CONFIG_LIBDIR=/nonexistent PKG_CONFIG_PATH=
rm -f build/core/CMakeCache.txt
cmake --preset core "-DCMAKE_CXX_FLAGS=-I$hidden" -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    "${disabled[@]}" >"$hidden/configure.log" 2>&1 || {
    cat "$hidden/configure.log"
    exit 1
}
cmake --build --preset core
ctest --preset core -j 2 --progress
