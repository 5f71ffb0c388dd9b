#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# run.sh [PATH...]: installs what is missing, builds, and opens the window with the paths. Where
# there is no display it analyses them on the terminal. Without a path it makes a short track of
# known tempo and analyses that.
set -euo pipefail
called_from=$PWD
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

install_missing "${PACKAGES_BUILD[@]}" "${PACKAGES_DESKTOP[@]}"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
}
# A build folder that the tests have set up keeps its tests.
tests=OFF
if [ -f build/CMakeCache.txt ] && grep -q '^TACTUS_BUILD_TESTS:BOOL=ON' build/CMakeCache.txt; then
    tests=ON
fi
echo "Building Tactus (some minutes the first time) ..." >&2
quietly cmake --preset release -DTACTUS_BUILD_TESTS=$tests
build=(cmake --build --preset release --target tactus tactus-desktop tactus-demo-track guide)
if [ -t 2 ]; then
    "${build[@]}" >&2
else
    quietly "${build[@]}"
fi

paths=()
for path in "$@"; do
    case $path in
        /*) paths+=("$path") ;;
        *) paths+=("$called_from/$path") ;;
    esac
done
if [ ${#paths[@]} -eq 0 ]; then
    demo="build/Demonstration at 124 BPM.wav"
    build/scripts/tactus-demo-track "$demo" 124
    echo "No path was given: here is a demonstration track of 124 BPM." >&2
    paths=("$demo")
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    build/src/desktop/tactus-desktop "${paths[@]}"
else
    echo "There is no display: the files are analysed on the terminal." >&2
    build/src/cli/tactus analyze -- "${paths[@]}"
fi
