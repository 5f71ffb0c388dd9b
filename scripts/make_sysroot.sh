#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# make_sysroot.sh ARCHITECTURE FOLDER PACKAGE...: unpacks Debian packages of another architecture and
# everything they depend on into FOLDER, for a cross compiler and an emulator. What is installed on
# this machine stays as it is. Does nothing when FOLDER holds just these packages already.
set -euo pipefail
architecture=$1
mkdir -p "$2"
root=$(readlink -f "$2")
shift 2
if [ "$(cat "$root/packages" 2>/dev/null)" = "$*" ]; then
    exit 0
fi

# An apt of its own: this machine's mirror and keys, another architecture, nothing installed.
state=$root/var/apt
mkdir -p "$state/lists/partial" "$state/archives/partial"
: >"$state/status"
cat >"$state/apt.conf" <<EOF
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Sandbox::User "root";
APT::Install-Recommends "false";
Dir::State "$state";
Dir::State::status "$state/status";
Dir::Cache "$state";
Dir::Log "$state";
EOF
export APT_CONFIG=$state/apt.conf
{
    apt-get update -q
    apt-get install -q -y --download-only "$@"
} >"$state/log" 2>&1 || {
    tail -n 20 "$state/log" >&2
    exit 1
}

# As Debian merges them: /lib and its like are names of what is in /usr.
for folder in bin lib lib64 sbin; do
    mkdir -p "$root/usr/$folder"
    ln -sfn "usr/$folder" "$root/$folder"
done
for package in "$state"/archives/*.deb; do
    dpkg-deb --fsys-tarfile "$package" | tar -x --keep-directory-symlink -C "$root"
done
rm -rf "$state/archives" "$state/lists"
# Links that start at the root start at FOLDER.
find "$root/usr" -type l -lname '/*' | while read -r link; do
    ln -sfnr "$root$(readlink "$link")" "$link"
done
echo "$*" >"$root/packages"
