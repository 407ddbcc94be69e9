#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Changes sources one place at a time and tells which changes no test notices; see mutants.py.
exec python3 "$(dirname "$0")/mutants.py" "$@"
