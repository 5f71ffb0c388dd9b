#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# make_song.sh [-b BUILD_FOLDER] FOLDER: writes four minutes of the demonstration track at 124 BPM,
# in stereo at 44100 Hz, as song.wav (16 bits), song.mp3 (192 kbit/s) and song.m4a (AAC, 160 kbit/s).
set -euo pipefail

build=$(dirname "$0")/../build
while getopts b: option; do
    case $option in
    b) build=$OPTARG ;;
    *) exit 2 ;;
    esac
done
folder=${!OPTIND:?usage: bench/make_song.sh [-b BUILD_FOLDER] FOLDER}
mkdir -p "$folder"
"$build/scripts/tactus-demo-track" "$folder/minute.wav" 124
ffmpeg -nostdin -v error -y -stream_loop 3 -i "$folder/minute.wav" -t 240 -ac 2 "$folder/song.wav"
ffmpeg -nostdin -v error -y -i "$folder/song.wav" -b:a 192k "$folder/song.mp3"
ffmpeg -nostdin -v error -y -i "$folder/song.wav" -c:a aac -b:a 160k "$folder/song.m4a"
rm "$folder/minute.wav"
