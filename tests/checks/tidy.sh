#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails on what clang-tidy (with clang's own warnings) finds. A source is looked at again only when it,
# a header of the project or the configuration changed since it last passed.
set -euo pipefail
cd "$1"
build=$2
stamps="$build/tidy"
mkdir -p "$stamps"

state=$({
    cat .clang-tidy
    clang-tidy --version
    git ls-files --cached --others --exclude-standard -- '*.h' '*.in' | sort | xargs cat
} | sha256sum | cut -d' ' -f1)

todo=()
while read -r file; do
    sum=$(sha256sum "$file" | cut -d' ' -f1)
    stamp="$stamps/$(tr / _ <<<"$file")"
    [ "$(cat "$stamp" 2>/dev/null)" = "$state $sum" ] || todo+=("$file")
done < <(git ls-files --cached --others --exclude-standard -- 'src/*.cpp' 'examples/*.cpp')
[ ${#todo[@]} -eq 0 ] && exit 0

check() {
    local file=$1
    if clang-tidy --quiet -p "$BUILD" --extra-arg=-Wno-unknown-warning-option "$file" 2>/dev/null; then
        echo "$STATE $(sha256sum "$file" | cut -d' ' -f1)" >"$STAMPS/$(tr / _ <<<"$file")"
    else
        return 1
    fi
}
export -f check
export BUILD=$build STATE=$state STAMPS=$stamps
printf '%s\n' "${todo[@]}" | xargs -P "$(nproc)" -I{} bash -c 'check {}'
