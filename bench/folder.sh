#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# folder.sh [-n RUNS] [-b BUILD_FOLDER] FILE: two hundred copies of FILE, analysed with one job and
# with two in turns; prints the medians of the elapsed seconds and their ratio. The single job gets
# a single core: with one to spare it would decode there.
set -euo pipefail
export TACTUS_NO_RECORDS=1 # nothing that was heard before, nothing to be remembered

runs=5
build=$(dirname "$0")/../build
while getopts n:b: option; do
    case $option in
    n) runs=$OPTARG ;;
    b) build=$OPTARG ;;
    *) exit 2 ;;
    esac
done
file=${!OPTIND:?usage: bench/folder.sh [-n RUNS] [-b BUILD_FOLDER] FILE}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/files"
for ((i = 100; i < 300; i++)); do
    cp "$file" "$work/files/$i.${file##*.}"
done

elapsed() {
    local TIMEFORMAT=%R cores=()
    [ "$1" -gt 1 ] || cores=(taskset -c 0)
    { time "${cores[@]}" "$build/src/cli/tactus" analyze --force --jobs "$1" --format csv -- "$work/files" \
        >"$work/rows-$1" 2>/dev/null; } 2>>"$work/seconds-$1"
}

median() {
    sort -n "$work/seconds-$1" |
        awk '{ v[NR] = $1 } END { print (v[int((NR + 1) / 2)] + v[int((NR + 2) / 2)]) / 2 }'
}

for ((i = 0; i < runs; i++)); do
    elapsed 1
    elapsed 2
done
cmp "$work/rows-1" "$work/rows-2"
awk -v one="$(median 1)" -v two="$(median 2)" -v runs="$runs" 'BEGIN {
    printf "200 files, median of %d runs: %.2f s with one job, %.2f s with two, %.2f times as fast\n",
        runs, one, two, one / two }'
