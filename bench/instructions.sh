#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# instructions.sh FILE TACTUS...: what the engine executes for FILE in one build of Tactus after the
# other, counted by callgrind: millions of instructions of the whole profile and of its kernels, each
# with everything that it calls. The counts don't depend on the machine's load.
set -euo pipefail

if [ $# -lt 2 ]; then
    echo "usage: bench/instructions.sh FILE TACTUS..." >&2
    exit 2
fi
file=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for tactus in "$@"; do
    echo "$tactus, $file:"
    valgrind --quiet --tool=callgrind --callgrind-out-file="$work/counts" --collect-atstart=no \
        --toggle-collect='CProfileBuilder::BuildProfile*' \
        "$tactus" profile --trace "$file" >"$work/profile" 2>"$work/messages" || {
        cat "$work/messages" >&2
        exit 1
    }
    callgrind_annotate --inclusive=yes --threshold=100 --show-percs=no "$work/counts" >"$work/table"
    while IFS='|' read -r name function; do
        awk -v name="$name" -v wanted="$function" '{
                count = $1
                gsub(",", "", count)
                if (index($0, ":" wanted "(") && count + 0 > most) most = count + 0
            } END {
                if (most > 0) printf "  %-44s %10.1f\n", name, most / 1e6
            }' "$work/table"
    done <<'NAMES'
whole profile|CProfileBuilder::BuildProfile
bass filter, frame by frame|CIIRFilt::fl
bass filter, in lanes|CLaneFilter::RunBurst
search for bass notes|CPfNoteDetector::FindPeriodicWaveforms
peaks of the bass|CPcmThumbnailBuilder::BuildPcmThumbnailRange
transform and energy, frame by frame|CPfSpecEngBuilder::GetSpecEnergy
transform and energy, eight frames|CPfSpecEngBuilder::GetSpecEnergies
fingerprint|CPfFingerprintBuilder::PushPcm
pruning of the notes|CPfNoteMap::RemoveSimilarItems
onsets by slope|CPfImpactFinder::BuildImpactPoints
onsets by ratio|CPfImpactFinder::BuildImpactPointsClassic
base tempo|CPfBpmDetector::DetectBaseBpm
beat grid|CPfBeatBuilder::BuildBeatPointsAlt
beat grid, first half: its onsets|CPfBeatBuilder::FindCandidates
beat grid, second half|CPfBeatBuilder::BuildGrid
grid: scoring, connecting and linking onsets|CPfBeatBuilder::ClusterFilterPoints
measure marks|CPfBeatBuilder::BuildMeasStartMarks
NAMES
done
