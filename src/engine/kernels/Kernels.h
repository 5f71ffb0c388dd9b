// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// A kind of vector unit, by Highway's bit and name.
struct CKernelTarget {
    std::int64_t m_nBit;
    char const* m_pName;
};

/// Kernels are compiled once for every kind of vector unit and once as plain loops. All give the
/// same bits, and the process takes the first that this machine runs.
/// Returns: those that it runs, the best first, the plain loops ("SCALAR") last.
[[nodiscard]] std::vector<CKernelTarget> GetKernelTargets();

/// While one of these lives, every kernel of the process is that of `target`, or its plain loop.
/// For the tests and benchmarks that hold them against each other. They may be nested.
/// Thread: one at a time; a kernel that another thread has begun goes on as it was.
class CForceKernels {
public:
    CForceKernels();
    explicit CForceKernels(CKernelTarget const& target);
    CForceKernels(CForceKernels const&) = delete;
    CForceKernels& operator=(CForceKernels const&) = delete;
    ~CForceKernels();

private:
    std::int64_t m_nBefore;
};
