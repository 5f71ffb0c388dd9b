#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# What the analysis of a whole file costs beside decoding it.
#
#     bench/whole_file.sh [-n RUNS] [-b BUILD_FOLDER] FILE...
#     bench/whole_file.sh -u [-n RUNS] [-b BUILD_FOLDER]
#
# For every file `tactus analyze` and plain decodes of the same file run in turns, so that a change
# of the machine's speed meets all of them; the medians of their CPU seconds (user and system) are
# printed, and the ratio of Tactus' median to each other one. Programs that find a tempo and happen
# to be installed run along (aubio-tools, soundstretch, bpm-tools), with the decode that they need.
#
# Everything runs on one core. With a free one, Tactus decodes and hears at once, and each takes more
# CPU for the other's sake: less time, but more of it.
#
# With -u the files are made: four minutes of music, and of sounds that are unkind to filters. All run
# in turns; the medians of the analysis are printed, and the ratio of each to that of music.
set -euo pipefail
export TACTUS_NO_RECORDS=1 # nothing that was heard before, nothing to be remembered

taskset -p -c 0 $$ >/dev/null

runs=11
unkind=false
build=$(dirname "$0")/../build
while getopts un:b: option; do
    case $option in
    n) runs=$OPTARG ;;
    b) build=$OPTARG ;;
    u) unkind=true ;;
    *) exit 2 ;;
    esac
done
shift $((OPTIND - 1))
if [ $# -eq 0 ] && [ "$unkind" = false ]; then
    echo "usage: bench/whole_file.sh [-n RUNS] [-b BUILD_FOLDER] FILE... | -u" >&2
    exit 2
fi

tactus=$build/src/cli/tactus
plain=$build/bench/plain_decode
times=$(mktemp -d)
trap 'rm -rf "$times"' EXIT

# run NAME COMMAND...: appends the CPU seconds of one run to the times under NAME.
run() {
    local name=$1 TIMEFORMAT='%U %S'
    shift
    { time "$@" >/dev/null 2>"$times/messages"; } 2>"$times/time" || {
        echo "$name failed:" >&2
        cat "$times/messages" >&2
        exit 1
    }
    awk '{ printf "%.3f %.3f %.3f\n", $1 + $2, $1, $2 }' "$times/time" >>"$times/$name"
}

# median NAME COLUMN: of the sums (1), of the user's (2) or of the system's share (3).
median() {
    cut -d ' ' -f "$2" "$times/$1" | sort -n |
        awk '{ v[NR] = $1 } END { print (v[int((NR + 1) / 2)] + v[int((NR + 2) / 2)]) / 2 }'
}

# with_wav FILE PROGRAM: the tempo by a program that reads WAV alone, behind a decode where need be.
with_wav() {
    if [ "${1##*.}" = wav ]; then
        "$2" "$1" -bpm
    else
        ffmpeg -nostdin -v error -threads 1 -i "$1" -map 0:a:0 -ac 1 -ar 44100 -y "$times/decoded.wav" &&
            "$2" "$times/decoded.wav" -bpm
    fi
}

# bpm_of FILE: the tempo by a program that reads bare floats.
bpm_of() {
    ffmpeg -nostdin -v error -threads 1 -i "$1" -map 0:a:0 -ac 1 -ar 44100 -f f32le - | bpm
}

has() {
    command -v "$1" >/dev/null
}

# make_unkind: four minutes each, mono, 16 bits: music.wav and what filters don't like.
make_unkind() {
    local make=(ffmpeg -nostdin -v error -y) source=(-f lavfi -i)
    "$build/scripts/tactus-demo-track" "$times/minute.wav" 124
    "${make[@]}" -stream_loop 3 -i "$times/minute.wav" -t 240 "$times/music.wav"
    "${make[@]}" "${source[@]}" 'anullsrc=r=44100:cl=mono' -t 240 "$times/silence.wav"
    "${make[@]}" -ss 20 -t 0.5 -i "$times/minute.wav" -af apad=whole_dur=240 "$times/music-then-silence.wav"
    "${make[@]}" "${source[@]}" "aevalsrc=if(lt(mod(t\,0.46875)\,0.004)\,0.9\,0):s=44100:d=240" "$times/clicks.wav"
    "${make[@]}" "${source[@]}" 'anoisesrc=r=44100:d=240:c=white:seed=7:a=1' "$times/noise.wav"
    "${make[@]}" "${source[@]}" 'anoisesrc=r=44100:d=240:c=white:seed=7:a=0.0001' "$times/quiet-noise.wav"
}

if [ "$unkind" = true ]; then
    make_unkind
    sounds=(music silence music-then-silence clicks noise quiet-noise)
    for ((i = 0; i < runs; i++)); do
        for sound in "${sounds[@]}"; do
            run "$sound" "$tactus" analyze --force --jobs 1 --quiet --format csv -- "$times/$sound.wav"
        done
    done
    echo "four minutes of each, median CPU seconds of $runs runs, times that of music:"
    for sound in "${sounds[@]}"; do
        awk -v name="$sound" -v own="$(median "$sound" 1)" -v music="$(median music 1)" \
            'BEGIN { printf "  %-20s %6.3f s   %.2f\n", name, own, own / music }'
    done
    exit 0
fi

for file in "$@"; do
    rm -f "$times"/*
    names=(tactus ffmpeg)
    for ((i = 0; i < runs; i++)); do
        run tactus "$tactus" analyze --force --jobs 1 --quiet --format csv -- "$file"
        run ffmpeg ffmpeg -nostdin -v error -threads 1 -i "$file" -map 0:a:0 -ac 1 -ar 44100 -f s16le -y /dev/null
        if [ -x "$plain" ]; then
            run plain_decode "$plain" "$file"
        fi
        if has aubio; then
            run aubio aubio tempo "$file"
        fi
        if has soundstretch; then
            run soundstretch with_wav "$file" soundstretch
        fi
        if has bpm; then
            run bpm bpm_of "$file"
        fi
    done
    for name in plain_decode aubio soundstretch bpm; do
        [ -f "$times/$name" ] && names+=("$name")
    done
    echo "$file, median CPU seconds of $runs runs:"
    own=$(median tactus 1)
    for name in "${names[@]}"; do
        awk -v name="$name" -v own="$own" -v all="$(median "$name" 1)" \
            -v user="$(median "$name" 2)" -v kernel="$(median "$name" 3)" 'BEGIN {
            printf "  %-14s %6.3f s (user %.3f, system %.3f)", name, all, user, kernel
            if (name != "tactus" && all > 0)
                printf "   tactus takes %.2f times as long", own / all
            printf "\n"
        }'
    done
done
