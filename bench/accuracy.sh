#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# accuracy.sh [BPM...]: makes the demonstration track at each tempo, analyses it, and prints the tempo
# that was found, its distance from the truth, and the ratio of the two where they are far apart.
set -euo pipefail
export TACTUS_NO_RECORDS=1 # nothing that was heard before, nothing to be remembered
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
[ $# -gt 0 ] || set -- 60 70 75 80 82 85 90 95 97.3 100 105 110.5 115 120 124 128 133.33 140 145 150 \
    155 160 163.9 165 170 174 180 200
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for bpm in "$@"; do
    build/scripts/tactus-demo-track "$work/$bpm.wav" "$bpm"
done
cd "$work"
printf '%8s %8s %8s %6s\n' truth found error ratio
for bpm in "$@"; do
    found=$("$OLDPWD/build/src/cli/tactus" profile --trace "$bpm.wav" | jq .bpm)
    awk -v truth="$bpm" -v found="$found" 'BEGIN {
        ratio = found / truth
        far = ratio < 0.9 || ratio > 1.1
        printf "%8.2f %8.2f %8s %6s\n", truth, found, far ? "" : sprintf("%+.3f", found - truth),
            far ? sprintf("%.3f", ratio) : "" }'
done
