#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on a test file that neither tests/CMakeLists.txt nor that of its own folder names.
set -euo pipefail
cd "$1/tests"

bad=0
while read -r file; do
    own=$(dirname "$file")/CMakeLists.txt
    grep -qF "${file#./}" CMakeLists.txt || { [ -f "$own" ] && grep -qF " $(basename "$file")" "$own"; } || {
        echo "tests/${file#./} is not registered in tests/CMakeLists.txt"
        bad=1
    }
done < <(find . -name '*_test.cpp')
exit $bad
