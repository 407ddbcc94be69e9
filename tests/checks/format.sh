#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on a source that clang-format would change.
set -euo pipefail
cd "$1"
git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' | xargs clang-format --dry-run -Werror
