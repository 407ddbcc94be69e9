#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Draws the rooms of the house and what they include, as the sources have it: scripts/graph.sh [FILE], by
# default docs/pictures/rooms.png. An arrow that other arrows already imply is left out. Fails on a circle.
# Needs Graphviz.
set -euo pipefail
cd "$(dirname "$0")/.."

out=${1:-docs/pictures/rooms.png}
for tool in dot tred acyclic; do
    command -v $tool >/dev/null || {
        echo "$tool is missing (package graphviz)" >&2
        exit 2
    }
done

arrows=$(mktemp)
trap 'rm -f "$arrows"' EXIT
tests/checks/includes.sh . >"$arrows"
graph() {
    echo 'digraph rooms {'
    echo 'graph [rankdir=TB, nodesep=0.3, ranksep=0.45, fontname="DejaVu Sans"];'
    echo 'node [shape=box, style="rounded,filled", fillcolor="#eef3f7", color="#51718a",'
    echo '      fontname="DejaVu Sans", fontsize=12]; edge [color="#51718a", arrowsize=0.7];'
    # "room  12 files  -> one two"
    awk '{
        lines = ""
        printf "\"%s\" [label=\"%s\\n%d files\"", $1, $1, $2
        if ($1 ~ /^platform/) printf ", fillcolor=\"#f6eee2\", color=\"#8a6a3a\""
        if ($1 ~ /^hosts/) printf ", fillcolor=\"#eaf4ea\", color=\"#4c7a4c\""
        print "];"
        for (i = 5; i <= NF; ++i) if ($i != "nothing") printf "\"%s\" -> \"%s\";\n", $1, $i
    }' "$arrows"
    echo '}'
}
graph | acyclic -n || {
    echo "The rooms include one another in a circle" >&2
    exit 1
}
graph | tred | dot -Tpng -Gdpi=110 -o "$out"
echo "$out is drawn"
