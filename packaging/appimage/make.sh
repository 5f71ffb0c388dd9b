#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# make.sh [FOLDER]: the window as an AppImage. Installs the programs into FOLDER/AppDir
# (build-appimage if none is given) and has linuxdeploy with its Qt plug-in, which must be in PATH,
# bring the libraries along and pack it all. To run on old systems too, make it on one.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.."
folder=${1:-build-appimage}

cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
    -DTACTUS_BUILD_TESTS=OFF
cmake --build "$folder"
rm -rf "$folder/AppDir"
for component in cli desktop; do
    DESTDIR=$folder/AppDir cmake --install "$folder" --component "$component"
done

for tool in linuxdeploy linuxdeploy-plugin-qt; do
    if ! command -v "$tool" >/dev/null; then
        echo "$tool is not in PATH; $folder/AppDir is ready to be packed." >&2
        exit 1
    fi
done
cd "$folder"
linuxdeploy --appdir AppDir --plugin qt --output appimage \
    --desktop-file AppDir/usr/share/applications/tactus-desktop.desktop \
    --icon-file AppDir/usr/share/icons/hicolor/256x256/apps/tactus-desktop.png
