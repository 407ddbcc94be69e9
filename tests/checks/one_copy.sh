#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when what a process must have once (what the steps know, the settings form, the count of references)
# is in more than one of the files that a host's process loads, or when the extension library exports more
# than its four entry points: one_copy.sh SOURCES BUILD.
set -euo pipefail
build=$2
bad=0

steps=$(readlink -f "$build/lib/libvelmora_steps.so")
host_files=("$build/bin/velmora" "$build/lib/libVelmora.so")
plugin=$build/lib/qgis/libvelmoraplugin.so
[ ! -e "$plugin" ] || host_files+=("$plugin")

# The files of "$2..." that define the symbol "$1" (a pattern over nm's demangled names).
defining() {
    local symbol=$1 file
    shift
    for file in "$@"; do
        if grep -qE " [bBdDtTuVW] .*$symbol" <<<"$(nm -C "$file")"; then echo "$file"; fi
    done
}

for symbol in 'velmora::processState\(\)' 'settingsForm\(velmora::IApplication&\)' \
    'velmora::moduleReferences\(\)' 'velmora::ReferenceEtRun::' 'velmora::frmEfficiency::frmEfficiency'; do
    found=$(defining "$symbol" "$steps" "${host_files[@]}")
    if [ "$found" != "$steps" ]; then
        echo "$symbol is not in $steps alone, but in: ${found:-no file}"
        bad=1
    fi
done

exported=$(nm -D --defined-only "$build/lib/libVelmora.so" | awk '{ print $3 }' | sort | tr '\n' ' ')
if [ "$exported" != "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer " ]; then
    echo "libVelmora.so exports: $exported"
    bad=1
fi
exit $bad
