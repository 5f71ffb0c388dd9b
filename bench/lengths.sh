#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# lengths.sh [-n RUNS] [-b BUILD_FOLDER] [-x EXTENSION] [MINUTES...]: analyses the demonstration track
# at 124 BPM, repeated to each length, and prints for each
#   cpu      seconds of CPU (user and system), median of the runs
#   peak     largest resident memory, in MiB, largest of the runs
#   own      peak without what `tactus analyze` of one second of sound takes, which is the program's
#            and its libraries' code and data
# EXTENSION is wav (the default), aiff, caf, mp3 or m4a.
set -euo pipefail
export TACTUS_NO_RECORDS=1 # nothing that was heard before, nothing to be remembered

runs=3
build=$(dirname "$0")/../build
extension=wav
while getopts n:b:x: option; do
    case $option in
    n) runs=$OPTARG ;;
    b) build=$OPTARG ;;
    x) extension=$OPTARG ;;
    *) exit 2 ;;
    esac
done
shift $((OPTIND - 1))
[ $# -gt 0 ] || set -- 1 10 60 240
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$build/scripts/tactus-demo-track" "$work/demo.wav" 124
minute=$work/minute.$extension
ffmpeg -nostdin -v error -i "$work/demo.wav" -b:a 128k "$minute"

# measure SECONDS: makes a file of that length, analyses it; prints CPU seconds and peak in KiB.
measure() {
    local track=$work/track.$extension i
    ffmpeg -nostdin -v error -y -stream_loop -1 -i "$minute" -t "$1" -c copy "$track"
    for ((i = 0; i < runs; i++)); do
        /usr/bin/time -a -o "$work/$1" -f '%U %S %M' "$build/src/cli/tactus" \
            analyze --force --jobs 1 --quiet --format csv -- "$track" >/dev/null
    done
    awk '{ print $1 + $2, $3 }' "$work/$1" | sort -n |
        awk '{ cpu[NR] = $1; if ($2 > peak) peak = $2 } END { print cpu[int((NR + 1) / 2)], peak }'
}

base=$(measure 1 | cut -d ' ' -f 2)
printf '%8s %8s %10s %8s %7s\n' minutes cpu cpu/minute peak own
for minutes in "$@"; do
    measure $((minutes * 60)) | awk -v minutes="$minutes" -v base="$base" '{
        printf "%8d %8.2f %10.4f %8.1f %7.1f\n", minutes, $1, $1 / minutes, $2 / 1024,
            ($2 - base) / 1024 }'
done
