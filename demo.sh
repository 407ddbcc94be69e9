#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, makes the sample basin in demo/ and runs reference ET,
# crop ET and precipitation on it.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
scripts/build.sh release velmora
exec build/release/bin/velmora --quiet demo demo
