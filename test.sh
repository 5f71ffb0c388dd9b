#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# test.sh [CTEST OPTION...]: installs what is missing, builds and runs every test.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

install_missing "${PACKAGES_BUILD[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_TEST[@]}" \
    "${PACKAGES_PYTHON[@]}"
cmake --preset release -DTACTUS_BUILD_TESTS=ON
cmake --build --preset release
ctest --preset release --parallel "$(nproc)" "$@"
