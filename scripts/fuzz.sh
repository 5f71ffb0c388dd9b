#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# fuzz.sh SECONDS [TARGET...]: runs each fuzz target of build-fuzz for that long, those that read
# tags for twice as long, from its seeds in fuzz/corpus; one target per core at a time. What it finds
# stays in build-fuzz/artifacts.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
export seconds=$1
shift
if [ $# -eq 0 ]; then
    for source in fuzz/*Fuzz.cpp; do
        [ -e "$source" ] || { echo "fuzz: there are no targets"; exit 0; }
        set -- "$@" "$(basename "$source" .cpp)"
    done
fi

fuzz_one() {
    local target=$1 time=$seconds log=build-fuzz/found/$1.log status=0
    case $target in *Tag* | *ID3* | *MetaData*) time=$((2 * seconds)) ;; esac
    mkdir -p "build-fuzz/found/$target" "build-fuzz/artifacts/$target" "fuzz/corpus/$target"
    "build-fuzz/fuzz/$target" -max_total_time="$time" -timeout=20 -rss_limit_mb=4096 \
        -print_final_stats=1 -artifact_prefix="build-fuzz/artifacts/$target/" \
        "build-fuzz/found/$target" "fuzz/corpus/$target" >"$log" 2>&1 || status=1
    [ "$status" -eq 0 ] || tail -n 40 "$log"
    sed -n "s/stat::number_of_executed_units: */$target, $time s, runs: /p" "$log"
    return "$status"
}
export -f fuzz_one

printf '%s\n' "$@" | xargs -P "$(nproc)" -I{} bash -c 'fuzz_one {}'
