// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Replaces the program's non-throwing array allocation, which the standard allows a program to do
// once. Memory still comes from the ordinary array allocation, so that deleting is unchanged.

#include "support/FailingAllocation.h"

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
