#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# same_trace.sh BEFORE AFTER: the full trace of twenty generated files by two builds of Tactus must be
# the same bytes. Songs of many tempi, one that changes its tempo, one with a gap; clicks, noise,
# silence, tones, a sweep, very short and very long files, other rates, channels and depths.
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: bench/same_trace.sh BEFORE AFTER (two programs tactus)" >&2
    exit 2
fi
before=$(readlink -f "$1")
after=$(readlink -f "$2")
demo=$(dirname "$after")/../../scripts/tactus-demo-track
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# convert ARGUMENTS...: ffmpeg without its chatter and without dither or dates.
convert() {
    ffmpeg -nostdin -v error -y "$@"
}

for bpm in 84 97.3 110.5 124 140 163.9 200; do
    "$demo" "song-$bpm.wav" "$bpm"
done
convert -i song-110.5.wav -i song-140.wav -filter_complex '[0][1]concat=n=2:v=0:a=1' change.wav
convert -i song-124.wav -af "volume=0:enable='between(t,20,31)'" gap.wav
convert -i song-84.wav -ac 2 -af 'tremolo=f=0.5:d=0.9' swell.wav
convert -i song-97.3.wav -t 9 short.wav
convert -i song-97.3.wav -t 0.01 tiny.wav
convert -stream_loop 19 -i song-163.9.wav -c copy twenty-minutes.wav
convert -i song-140.wav -ar 48000 -c:a pcm_s24be song-48000.aiff
convert -i song-140.wav -ar 22050 -c:a pcm_u8 song-22050.wav
convert -f lavfi -i 'anoisesrc=d=45:c=white:seed=7:a=0.5' noise.wav
convert -f lavfi -i 'anoisesrc=d=45:c=brown:seed=7:a=0.9' rumble.wav
convert -f lavfi -i 'anullsrc=r=44100:cl=mono' -t 40 silence.wav
convert -f lavfi -i 'aevalsrc=0.5*sin(2*PI*55*t)+0.4*sin(2*PI*110*t)+0.2*sin(2*PI*82.4*t):d=45' bass.wav
convert -f lavfi -i 'aevalsrc=if(lt(mod(t\,0.46875)\,0.004)\,0.9\,0):d=60' clicks.wav

files=(*.wav *.aiff)
different=0
for file in "${files[@]}"; do
    "$before" profile --trace "$file" >"$file.before"
    "$after" profile --trace "$file" >"$file.after"
    if cmp -s "$file.before" "$file.after"; then
        echo "same       $(wc -c <"$file.after") bytes  $file"
    else
        echo "DIFFERENT  $file"
        different=$((different + 1))
    fi
done
echo "${#files[@]} files, $different different"
[ "$different" -eq 0 ]
