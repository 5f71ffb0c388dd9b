#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# make_signals.sh DEMO_TRACK FOLDER: generated files on which builds are held to the same bits. Songs
# of many tempi, one that changes its tempo, one with a gap; clicks, noise, silence, tones, very short
# and very long files, other rates, channels and depths, and FLAC, ALAC, AIFF and CAF.
set -euo pipefail
demo=$(readlink -f "$1")
mkdir -p "$2"
cd "$2"

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
convert -i gap.wav gap.flac
convert -i swell.wav -ar 48000 -sample_fmt s32 swell-48000.flac
convert -i change.wav -c:a alac change.m4a
convert -i bass.wav -c:a pcm_s16be bass.caf
