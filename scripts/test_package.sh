#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# test_package.sh [FOLDER]: makes the packages of Debian and of RPM systems in build-package, checks
# them, reads the Flatpak's manifest, installs Debian's on a bare Debian 12 in FOLDER (a temporary one
# if none is given), analyses a file there, and builds the example against the installed library.
# Needs root.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh
install_missing "${PACKAGES_BUILD[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_PYTHON[@]}" \
    "${PACKAGES_PACKAGING[@]}"

say() { echo "-- $*"; }

say "packages"
cmake --preset package >/dev/null
cmake --build --preset package >/dev/null
rm -f build-package/*.deb
(cd build-package && cpack -G DEB >/dev/null)
debs=(build-package/*.deb)
for deb in "${debs[@]}"; do
    say "$(basename "$deb"), $(stat -c %s "$deb") bytes"
done

say "lintian, desktop-file-validate, appstreamcli"
# CPack writes scripts that call ldconfig, whether dpkg does it by itself or not.
lintian --fail-on error,warning \
    --suppress-tags initial-upload-closes-no-bugs,maintscript-calls-ldconfig "${debs[@]}"
desktop-file-validate packaging/tactus-desktop.desktop
appstreamcli validate --no-net build-package/packaging/org.tactus.Tactus.metainfo.xml

say "packages for RPM systems"
rm -f build-package/*.rpm
(cd build-package && cpack -G RPM >/dev/null)
version=$(sed -n 's/^project(Tactus VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
# has NAME KIND PATTERN: the package's list of that kind holds a line like that.
has() {
    rpm -qp "--$2" build-package/"$1-$version"-*.rpm 2>/dev/null | grep -q "$3" ||
        { echo "$1: no $3 in its $2" >&2; exit 1; }
}
has tactus list '^/usr/bin/tactus$'
has tactus list '^/usr/share/man/man1/tactus\.1\.gz$'
has tactus list '^/usr/share/tactus/tactus-song-1.schema.json$'
has tactus list '^/usr/lib/systemd/user/tactus\.timer$'
has tactus requires '^libavcodec\.so\.'
has tactus info '^License *: MIT$'
has tactus-desktop list '^/usr/bin/tactus-desktop$'
has tactus-desktop requires "^tactus = $version\$"
has tactus-devel list '/libtactus_engine\.a$'
for rpm in build-package/*.rpm; do
    say "$(basename "$rpm"), $(stat -c %s "$rpm") bytes"
done

say "the Flatpak's manifest"
(cd build-package && flatpak-builder --show-manifest ../packaging/flatpak/org.tactus.Tactus.yml >/dev/null)

root=${1:-$(mktemp -d /var/tmp/tactus-package.XXXXXX)}
finish() {
    mountpoint -q "$root/proc" && umount "$root/proc"
    [ "$root" = "${1:-}" ] || rm -rf --one-file-system "$root"
}
trap 'finish "${1:-}"' EXIT
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root "$@"; }

if [ ! -x "$root/usr/bin/dpkg" ]; then
    # shellcheck disable=SC2016
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | head -n 1)
    say "a bare system in $root"
    debootstrap --variant=minbase bookworm "$root" "$mirror" >"$root.log" 2>&1
    rm -f "$root.log"
fi
if cp /etc/apt/sources.list.d/*.sources "$root/etc/apt/sources.list.d/" 2>/dev/null; then
    rm -f "$root/etc/apt/sources.list" # the same places under another name
fi
cp /etc/apt/apt.conf.d/9* "$root/etc/apt/apt.conf.d/" 2>/dev/null || true
cp /etc/resolv.conf "$root/etc/resolv.conf"
chmod 755 "$root" # apt reads it as a user of its own
mount -t proc proc "$root/proc"

say "installing them"
cp "${debs[@]}" "$root/var/cache/"
inside apt-get update -q >/dev/null
inside env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
    "${debs[@]/#build-package//var/cache}" g++ cmake make pkg-config man-db \
    libavformat-dev libavcodec-dev libswresample-dev libavutil-dev libutf8proc-dev libhwy-dev \
    libtag1-dev libsqlitecpp-dev libsqlite3-dev >/dev/null 2>&1

say "the service and its timer"
if command -v systemd-analyze >/dev/null; then
    units=$(mktemp -d)
    dpkg-deb --fsys-tarfile build-package/tactus_*.deb | tar -x -C "$units" ./usr/lib/systemd
    # The program is where this system has it, if at all: any other will do for a look.
    sed -i 's|^ExecStart=/usr/bin/tactus |ExecStart=/bin/true |' "$units"/usr/lib/systemd/user/tactus.service
    XDG_RUNTIME_DIR=$units systemd-analyze --user --man=no verify "$units"/usr/lib/systemd/user/tactus.*
    rm -r "$units"
else
    say "left out: no systemd-analyze here"
fi
grep -q '^ExecStart=/usr/bin/tactus analyze ' "$root/usr/lib/systemd/user/tactus.service"

say "analysing a file of 124 BPM"
build-package/scripts/tactus-demo-track "$root/srv/track.wav" 124
inside tactus --version
inside tactus analyze /srv/track.wav | tee "$root/srv/table"
grep -q ' 124\.0' "$root/srv/table"
inside man -P cat tactus | grep -q 'find the tempo'
test -s "$root/usr/share/doc/tactus/html/index.html"

say "the module for Python"
inside python3 -c 'import tactus; assert abs(tactus.analyze("/srv/track.wav").tempo - 124) < 0.05'
inside python3 -m tactus /srv/track.wav | grep -q ' 124\.0'

say "the window stays open"
status=0
inside env QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 timeout 5 tactus-desktop || status=$?
[ "$status" -eq 124 ]

say "the example by find_package and by pkg-config"
example=/usr/share/doc/libtactus-dev/examples/tempo
inside cmake -S "$example" -B /srv/by-cmake >/dev/null
inside cmake --build /srv/by-cmake >/dev/null
inside /srv/by-cmake/tempo /srv/track.wav
inside sh -c "c++ -std=c++20 $example/main.cpp \$(pkg-config --cflags --libs tactus) -o /srv/by-pkg"
inside /srv/by-pkg /srv/track.wav
inside sh -c "cc -std=c11 -Wall -Wextra -Werror $example/main.c \$(pkg-config --cflags --libs tactus) \
    -o /srv/in-c"
inside /srv/in-c /srv/track.wav
# shellcheck disable=SC2016
inside sh -c 'cd /usr/include/tactus && for header in *.h */*.h; do
    echo "#include <$header>" | c++ -std=c++20 -I. -fsyntax-only -x c++ - || exit 1; done'
say "the packages work"
