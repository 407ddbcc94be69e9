#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the fuzzers: scripts/fuzz.sh MINUTES [NAME ...], all of them by default, as many at once as there
# are processors (FUZZ_JOBS sets another number). Prints for each its inputs, the edges of the program
# that they covered and what it found; ends with 1 when anything was found. New inputs and findings are
# kept in build/fuzz/found/NAME, the corpora in the repository stay as they are.
set -euo pipefail
cd "$(dirname "$0")/.."

[[ ${1:-} =~ ^[1-9][0-9]*$ ]] || {
    echo "usage: scripts/fuzz.sh MINUTES [NAME ...]" >&2
    exit 2
}
minutes=$1
shift
names=("$@")
[ ${#names[@]} -gt 0 ] || mapfile -t names < <(cd tests/fuzz/corpus && printf '%s\n' *)
for name in "${names[@]}"; do
    [ -f "tests/fuzz/${name}_fuzz.cpp" ] || {
        echo "There is no fuzzer $name: tests/fuzz/${name}_fuzz.cpp" >&2
        exit 2
    }
done
for tool in clang++ ccache; do
    command -v $tool >/dev/null || {
        echo "$tool is missing (packages clang, libclang-rt-14-dev, ccache)" >&2
        exit 2
    }
done
scripts/build.sh fuzz "${names[@]/#/fuzz_}"

export ASAN_OPTIONS=${ASAN_OPTIONS:-allocator_may_return_null=1:detect_leaks=1}
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"

# One fuzzer; what it printed stays in its log.
fuzz() {
    local name=$1 seconds=$2 found=build/fuzz/found/$1
    mkdir -p "$found/corpus"
    rm -f "$found"/{crash,leak,oom,timeout}-*
    "build/fuzz/bin/fuzz_$name" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
        -max_len=65536 -use_value_profile=0 -print_final_stats=1 -artifact_prefix="$found/" -seed=1 \
        "$found/corpus" "tests/fuzz/corpus/$name" >"$found/log" 2>&1 </dev/null || true
}
export -f fuzz
printf '%s\n' "${names[@]}" |
    xargs -P "${FUZZ_JOBS:-$(nproc)}" -I{} bash -c "fuzz {} $((minutes * 60))"

bad=0
printf '%-20s %10s %8s %8s  %s\n' fuzzer inputs 'a second' edges findings
for name in "${names[@]}"; do
    found=build/fuzz/found/$name
    inputs=$(awk '/number_of_executed_units/ { n = $2 } END { print n }' "$found/log")
    rate=$(awk '/average_exec_per_sec/ { n = $2 } END { print n }' "$found/log")
    edges=$(grep -aoE 'cov: [0-9]+' "$found/log" | tail -1 | cut -d' ' -f2 || true)
    findings=$(find "$found" -maxdepth 1 -name '*-*' -printf '%f ')
    # A fuzzer that did not come to its end found something, or could not run at all.
    grep -aqE '^Done [0-9]+ runs' "$found/log" || findings=${findings:-"see $found/log"}
    [ -z "$findings" ] || bad=1
    printf '%-20s %10s %8s %8s  %s\n' "$name" "${inputs:-?}" "${rate:-?}" "${edges:-?}" "${findings:-none}"
done
exit $bad
