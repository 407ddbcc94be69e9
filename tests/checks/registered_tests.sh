#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on a test file that tests/CMakeLists.txt does not name.
set -euo pipefail
cd "$1/tests"

bad=0
while read -r file; do
    grep -qF "${file#./}" CMakeLists.txt || {
        echo "tests/${file#./} is not registered in tests/CMakeLists.txt"
        bad=1
    }
done < <(find . -name '*_test.cpp')
exit $bad
