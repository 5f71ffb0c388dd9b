#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# fuzz.sh SECONDS [TARGET...]: runs each fuzz target of build-fuzz for that long, from its seeds in
# fuzz/corpus. What it finds stays in build-fuzz/artifacts.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
seconds=$1
shift
if [ $# -eq 0 ]; then
    for source in fuzz/*Fuzz.cpp; do
        set -- "$@" "$(basename "$source" .cpp)"
    done
fi
for target in "$@"; do
    mkdir -p "build-fuzz/found/$target" "build-fuzz/artifacts/$target" "fuzz/corpus/$target"
    echo "-- $target, $seconds s"
    "build-fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
        -print_final_stats=1 -artifact_prefix="build-fuzz/artifacts/$target/" \
        "build-fuzz/found/$target" "fuzz/corpus/$target" 2>"build-fuzz/found/$target.log" ||
        { tail -n 40 "build-fuzz/found/$target.log"; exit 1; }
    grep -E 'number_of_executed_units|peak_rss_mb' "build-fuzz/found/$target.log"
done
