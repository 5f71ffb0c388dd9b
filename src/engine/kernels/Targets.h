// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

// What kernels are compiled for. Every source with a kernel includes this before anything of
// Highway's, so that all of them know the same targets.

// Vectors whose length only the processor knows can't stand in arrays. 32-bit NEON flushes
// subnormal numbers to zero, which changes bits.
#if defined(__arm__)
#define HWY_DISABLED_TARGETS HWY_NEON
#else
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#endif

// The plain loops as well, where every processor has vectors: tests hold the two together. Where
// none has, the loops are quicker than vectors that are emulated.
#define HWY_COMPILE_ALL_ATTAINABLE
#define HWY_BROKEN_EMU128 1
