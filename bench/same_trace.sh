#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# same_trace.sh BEFORE AFTER: the full trace of generated files (scripts/make_signals.sh) by two builds
# of Tactus must be the same bytes.
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: bench/same_trace.sh BEFORE AFTER (two programs tactus)" >&2
    exit 2
fi
before=$(readlink -f "$1")
after=$(readlink -f "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$(dirname "$0")/../scripts/make_signals.sh" "$(dirname "$after")/../../scripts/tactus-demo-track" "$work"

cd "$work"
files=(*)
different=0
for file in "${files[@]}"; do
    "$before" profile --trace "$file" >"$file.before"
    "$after" profile --trace "$file" >"$file.after"
    if cmp -s "$file.before" "$file.after"; then
        echo "same       $(wc -c <"$file.after") bytes  $file"
    else
        echo "DIFFERENT  $file"
        different=$((different + 1))
    fi
done
echo "${#files[@]} files, $different different"
[ "$different" -eq 0 ]
