#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# exports.sh [-n RUNS] [-c COUNT] [-b BUILD_FOLDER] FILE: a collection of COUNT songs (10,000 unless
# said) that were heard before, each with the record of FILE, exported whole; prints the elapsed
# seconds of each kind (median), the largest resident memory, the size of what was written, and that
# of the cache.
set -euo pipefail

runs=5
count=10000
build=$(dirname "$0")/../build
while getopts n:c:b: option; do
    case $option in
    n) runs=$OPTARG ;;
    c) count=$OPTARG ;;
    b) build=$OPTARG ;;
    *) exit 2 ;;
    esac
done
file=${!OPTIND:?usage: bench/exports.sh [-n RUNS] [-c COUNT] [-b BUILD_FOLDER] FILE}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CACHE_HOME=$work/cache XDG_STATE_HOME=$work/state
tactus=$build/src/cli/tactus
cp "$file" "$work/"
sleep 1 # so that a change of the file would show: else nothing is remembered
"$tactus" profile -q "$work/${file##*/}" >/dev/null
"$build/bench/keep_songs" "$work/${file##*/}" "$work/music" "$count"

for kind in rekordbox csv m3u8 'csv --where tempo>=120'; do
    rm -f "$work/costs"
    for ((i = 0; i < runs; i++)); do
        # shellcheck disable=SC2086 # the kind and its options are words
        /usr/bin/time -a -o "$work/costs" -f '%e %M' "$tactus" export $kind -q --overwrite-output \
            -o "$work/out" "$work/music"
    done
    sort -n "$work/costs" | awk -v kind="$kind" -v count="$count" -v bytes="$(stat -c %s "$work/out")" '
        { seconds[NR] = $1; peak = $2 > peak ? $2 : peak }
        END { printf "%d songs, %s: %.2f s (%.2f to %.2f), peak %.0f MiB, %.1f MiB written\n", count,
              kind, seconds[int((NR + 1) / 2)], seconds[1], seconds[NR], peak / 1024,
              bytes / 1048576 }'
done
"$tactus" cache info
