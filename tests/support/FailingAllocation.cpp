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
thread_local bool watching = false;
thread_local int firstFailing = 0;
thread_local int lastFailing = 0;
thread_local int seen = 0;

/// Counts an allocation. Returns: whether it has to fail.
bool Fails() {
    seen += watching ? 1 : 0;
    return watching && seen >= firstFailing && seen <= lastFailing;
}
} // namespace

CFailingAllocation::CFailingAllocation(int passing, int failing) {
    watching = true;
    firstFailing = passing + 1;
    lastFailing = passing + failing;
    seen = 0;
}

int CFailingAllocation::GetCount() {
    return seen;
}

CFailingAllocation::~CFailingAllocation() {
    watching = false;
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    if (Fails()) {
        return nullptr;
    }
    try {
        return ::operator new[](size);
    } catch (...) {
        return nullptr;
    }
}

extern "C" {
[[gnu::weak]] void* __real_calloc(std::size_t items, std::size_t size); // missing elsewhere

void* __wrap_calloc(std::size_t items, std::size_t size) {
    return Fails() ? nullptr : __real_calloc(items, size);
}
}
