// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/signal/CpuFeatures.h"

#include <atomic>

namespace {

std::atomic<int> g_nForcedScalar{0};

bool DetectAvx2() noexcept {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

} // namespace

bool UseAvx2() noexcept {
    static bool const hasAvx2 = DetectAvx2();
    return hasAvx2 && g_nForcedScalar.load(std::memory_order_relaxed) == 0;
}

CForceScalarKernels::CForceScalarKernels() noexcept {
    g_nForcedScalar.fetch_add(1, std::memory_order_relaxed);
}

CForceScalarKernels::~CForceScalarKernels() {
    g_nForcedScalar.fetch_sub(1, std::memory_order_relaxed);
}
