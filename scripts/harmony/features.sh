#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
# features.sh PROGRAM FILE...: a line of tactus-harmony-features for every audio file.
set -euo pipefail
program=$1
shift
for file in "$@"; do
    ffmpeg -nostdin -v error -i "$file" -af "pan=mono|c0=0.5*c0+0.5*c1" -ar 44100 -f f32le - |
        "$program" "$(basename "$file")"
done
