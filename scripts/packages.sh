# shellcheck shell=bash disable=SC2034
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Debian 12 packages that Tactus needs, by purpose, and how to install the missing ones. Sourced by
# run.sh, test.sh, .ci/run and test_package.sh.

# To build the program: compiler, decoder, tag, text and command-line libraries, the guide.
PACKAGES_BUILD=(
    ca-certificates cmake g++ ninja-build pkg-config
    libavcodec-dev libavformat-dev libavutil-dev libswresample-dev libbz2-dev libtag1-dev zlib1g-dev
    libhwy-dev libutf8proc-dev libsqlitecpp-dev libsqlite3-dev
    libcli11-dev nlohmann-json3-dev libpugixml-dev cmark-gfm
)

# To build and show the window, and the part that plays. The last two let it come up on a bare
# machine and draw text.
PACKAGES_DESKTOP=(
    qt6-multimedia-dev
    qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools linguist-qt6
    qt6-wayland fonts-dejavu-core
)

# To build the Python package and the plug-in for beets, and to run and check them.
PACKAGES_PYTHON=(
    pybind11-dev python3-dev python3-numpy
    python3-pytest python3-matplotlib python3-distributed beets mypy
)

# To run the tests: frameworks, encoders of other makers, independent tag readers, a display, what
# a screen reader is told, and what a locale with a decimal comma is made from.
PACKAGES_TEST=(
    libgtest-dev libgmock-dev ffmpeg python3 python3-mutagen python3-taglib python3-jsonschema
    python3-mido libxml2-utils eyed3 id3v2 jq attr
    xvfb openbox xdotool x11-utils dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3-gi
    procps locales mpg123 sndfile-programs
)

# To check the code: another compiler, its sanitizers and fuzzer, formatting, static analysis.
PACKAGES_CHECK=(
    clang-14 clang-format-14 clang-tidy-14 clang-tools-14 libclang-rt-14-dev
    libbenchmark-dev git shellcheck doxygen
)

# To make the packages of Debian and of RPM systems, check them, install the former on a bare system
# and read the manifest of the Flatpak.
PACKAGES_PACKAGING=(
    dpkg-dev file lintian appstream desktop-file-utils debootstrap rpm flatpak-builder
)

# To build for 64-bit ARM and run that here; and what is built against, of that architecture: the
# libraries of PACKAGES_BUILD, the compiler's and the tests'.
PACKAGES_ARM64=(g++-aarch64-linux-gnu qemu-user)
PACKAGES_SYSROOT=(libc6-dev libstdc++-12-dev libgtest-dev libgmock-dev)
for package in "${PACKAGES_BUILD[@]}"; do
    case $package in
        *-dev) PACKAGES_SYSROOT+=("$package") ;;
    esac
done

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Installing packages needs root or sudo." >&2
        return 1
    fi
}

# install_missing PACKAGE...: installs those that aren't there, and asks for lists only then.
install_missing() {
    local missing=() name
    for name in "$@"; do
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" != installed ]; then
            missing+=("$name")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}" >&2
    local log
    log=$(mktemp)
    if ! { as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q &&
        as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -q --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
