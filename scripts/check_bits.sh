#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# check_bits.sh BUILD...: the full trace of generated tracks must be the same bytes from every
# build, from a second run, and with two jobs. A build folder "build-clang" is made when missing.
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

tracks=()
for bpm in 84 97.3 124 163.9; do
    build/scripts/tactus-demo-track "$work/$bpm.wav" "$bpm"
    tracks+=("$work/$bpm.wav")
done
for build in "$@"; do
    "$build/src/cli/tactus" profile --trace "${tracks[@]}" >"$work/${build//\//_}.json"
done
build/src/cli/tactus profile --trace "${tracks[@]}" >"$work/again.json"
build/src/cli/tactus analyze --format jsonl -j 1 "${tracks[@]}" >"$work/one-job.jsonl"
build/src/cli/tactus analyze --format jsonl -j 2 "${tracks[@]}" >"$work/two-jobs.jsonl"

for build in "$@"; do
    cmp "$work/again.json" "$work/${build//\//_}.json"
done
cmp "$work/one-job.jsonl" "$work/two-jobs.jsonl"
echo "same bits: $# builds, ${#tracks[@]} tracks, $(wc -c <"$work/again.json") bytes of trace each"
