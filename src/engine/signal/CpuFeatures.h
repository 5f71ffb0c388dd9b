// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// True when this machine runs AVX2 and nobody holds a `CForceScalarKernels`. A kernel asks once
/// per call and takes its plain loop otherwise; both give the same bits.
/// Thread: any.
[[nodiscard]] bool UseAvx2() noexcept;

/// While one of these lives, every kernel of the process takes its plain loop. For the tests and
/// benchmarks that hold the two against each other.
/// Thread: any; a kernel that another thread has begun goes on as it was.
class CForceScalarKernels {
public:
    CForceScalarKernels() noexcept;
    CForceScalarKernels(CForceScalarKernels const&) = delete;
    CForceScalarKernels& operator=(CForceScalarKernels const&) = delete;
    ~CForceScalarKernels();
};
