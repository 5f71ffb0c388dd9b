// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Replaces the program's non-throwing array allocation, which the standard allows a program to do
// once. Memory still comes from the ordinary array allocation, so that deleting is unchanged. In
// the engine's tests the linker sends calls of calloc here (--wrap), and ours to the library's.

#include "support/FailingAllocation.h"

#include <cstddef>
#include <new>

namespace {
thread_local bool failing = false;
}

CFailingAllocation::CFailingAllocation() {
    failing = true;
}

CFailingAllocation::~CFailingAllocation() {
    failing = false;
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    if (failing) {
        return nullptr;
    }
    try {
        return ::operator new[](size);
    } catch (...) {
        return nullptr;
    }
}

extern "C" {
[[gnu::weak]] void* __real_calloc(std::size_t count, std::size_t size); // missing elsewhere

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return failing ? nullptr : __real_calloc(count, size);
}
}
