# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Numerics: every target links it. Floating point is strict: the bits that the source spells are
# the bits that come out, with every compiler and build type.
# Warnings: our own code compiles without any.

add_library(Numerics INTERFACE)
target_compile_features(Numerics INTERFACE cxx_std_20)
target_compile_options(Numerics INTERFACE -ffp-contract=off -fno-fast-math)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Files beyond 2 GB and times beyond 2038, for processors of 32 bits too.
    target_compile_definitions(Numerics INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

if(TACTUS_SANITIZE)
    target_compile_options(Numerics INTERFACE
        -fsanitize=${TACTUS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(Numerics INTERFACE -fsanitize=${TACTUS_SANITIZE})
endif()

add_library(Warnings INTERFACE)
target_compile_options(Warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
    -Wfloat-conversion -Wold-style-cast -Wcast-align -Wnon-virtual-dtor -Woverloaded-virtual
    -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough -Werror)
if(TACTUS_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # gcc reports false positives of these two once it has instrumented the code.
    target_compile_options(Warnings INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND TACTUS_SHARE_HEADERS)
    # Of sources that are compiled together gcc knows none as the one that a class is private to.
    target_compile_options(Warnings INTERFACE -Wno-subobject-linkage)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Unlike gcc, clang asks for an attribute on every function that hands a va_list on.
    target_compile_options(Warnings INTERFACE -Wno-format-nonliteral)
endif()
