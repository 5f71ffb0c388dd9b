// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/kernels/Kernels.h"

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>

/// One run for each kind of vector unit that this machine has, the best first, the plain loops
/// last.
inline void ForEveryKernel(benchmark::internal::Benchmark* benchmark) {
    auto const count = static_cast<std::int64_t>(GetKernelTargets().size());
    benchmark->DenseRange(0, count - 1);
}

/// Forces the kernels of the run's argument and names them in its line.
class CBenchKernels {
public:
    explicit CBenchKernels(benchmark::State& state)
        : m_target(GetKernelTargets()[static_cast<std::size_t>(state.range(0))]),
          m_forced(m_target) {
        state.SetLabel(m_target.m_pName);
    }

private:
    CKernelTarget m_target;
    CForceKernels m_forced;
};
