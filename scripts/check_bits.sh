#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# check_bits.sh BUILD...: the full trace of generated files (make_signals.sh) must be the same bytes
# from every build, from a second run, and with two jobs. A build folder "build-clang" is made when
# missing. A build for another processor has a script "emulate" that runs its programs.
set -euo pipefail
export TACTUS_NO_RECORDS=1 # nothing that was heard before, nothing to be remembered
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for build in "$@"; do
    if [ "$build" = build-clang ]; then
        cmake -S . -B build-clang -G Ninja -DCMAKE_BUILD_TYPE=Release \
            -DCMAKE_CXX_COMPILER=clang++-14 -DTACTUS_BUILD_TESTS=OFF \
            -DTACTUS_BUILD_DESKTOP=OFF >/dev/null
        cmake --build build-clang --target tactus >/dev/null
    fi
done

scripts/make_signals.sh build/scripts/tactus-demo-track "$work/signals"
files=("$work"/signals/*)
build/src/cli/tactus profile --trace "${files[@]}" >"$work/first.json"
traced=$(grep -c '^{"file"' "$work/first.json")
if [ "$traced" -ne ${#files[@]} ]; then
    echo "${#files[@]} files, but $traced traces"
    exit 1
fi

different=0
for build in "$@"; do
    run=()
    if [ -x "$build/emulate" ]; then
        run=("$build/emulate")
    fi
    "${run[@]}" "$build/src/cli/tactus" profile --trace "${files[@]}" >"$work/again.json"
    count=$(diff "$work/first.json" "$work/again.json" | grep -c '^>' || true)
    echo "$build: ${#files[@]} files, $count different"
    different=$((different + count))
done
build/src/cli/tactus analyze --format jsonl -j 1 "${files[@]}" >"$work/one-job.jsonl"
build/src/cli/tactus analyze --format jsonl -j 2 "${files[@]}" >"$work/two-jobs.jsonl"
cmp "$work/one-job.jsonl" "$work/two-jobs.jsonl"
echo "same bits: $# builds, ${#files[@]} files, $different different, $(wc -c <"$work/first.json") bytes of trace each"
[ "$different" -eq 0 ]
