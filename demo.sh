#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, makes the sample basin in demo/, runs the whole chain on it
# and writes a report of it.
set -euo pipefail
cd "$(dirname "$0")"

scripts/setup.sh
scripts/build.sh release velmora
exec build/release/bin/velmora --quiet demo demo
