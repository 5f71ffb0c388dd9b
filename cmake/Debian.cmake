# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Toolchain for another architecture of Debian: its cross compiler, a folder of its packages
# (scripts/make_sysroot.sh) and an emulator that runs what is built.
#   TACTUS_ARCHITECTURE   arm64, armhf or s390x
#   TACTUS_SYSROOT        the folder
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TACTUS_ARCHITECTURE TACTUS_SYSROOT)

set(arm64 aarch64-linux-gnu)
set(armhf arm-linux-gnueabihf)
set(s390x s390x-linux-gnu)
set(triplet ${${TACTUS_ARCHITECTURE}})
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${triplet}")

set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_SYSROOT ${TACTUS_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${TACTUS_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
    ${TACTUS_SYSROOT}/usr/lib/${triplet}/pkgconfig:${TACTUS_SYSROOT}/usr/share/pkgconfig)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR} -L ${TACTUS_SYSROOT})
