#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on a program or library of the build that lacks what cmake/hardening.cmake asks for:
# hardening.sh SOURCES BUILD.
set -euo pipefail
build=$2
bad=0

complain() {
    echo "$1: $2"
    bad=1
}

check() {
    local file=$1 headers dynamic symbols
    headers=$(readelf -Wl "$file")
    dynamic=$(readelf -Wd "$file")
    symbols=$(readelf -Ws --dyn-syms "$file")
    grep -qE 'GNU_RELRO' <<<"$headers" || complain "$file" "its relocations stay writable (no RELRO)"
    grep -qE 'BIND_NOW|FLAGS_1.*\bNOW\b' <<<"$dynamic" || complain "$file" "it binds lazily (no -z now)"
    grep -qE 'GNU_STACK.* RW  ?0x' <<<"$headers" || complain "$file" "its stack is executable"
    grep -qE '__stack_chk_fail' <<<"$symbols" || complain "$file" "its stacks are not protected"
    grep -qE '_chk(@|$)' <<<"$(grep -v __stack_chk_fail <<<"$symbols")" || [ "${3:-}" = unchecked ] ||
        complain "$file" "its library calls are not checked (no _FORTIFY_SOURCE)"
    [ "$2" != program ] || grep -qE 'FLAGS_1.*\bPIE\b' <<<"$dynamic" ||
        complain "$file" "it lies at a fixed address (no PIE)"
}

check "$build/bin/velmora" program
check "$build/lib/libVelmora.so" library unchecked
check "$(readlink -f "$build/lib/libvelmora_steps.so")" library
plugin=$build/lib/qgis/libvelmoraplugin.so
[ ! -e "$plugin" ] || check "$plugin" library unchecked
exit $bad
