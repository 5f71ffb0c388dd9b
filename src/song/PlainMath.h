// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Powers and logarithms out of additions and multiplications alone, so that they have the same
/// bits on every machine, which the C library does not promise.

constexpr float kLog2E = 1.44269504f; // Standard: ISO 80000-2, logarithm of e to the base 2.

/// 2^x in single precision, within 1e-6 of it relatively. Below -126: 0; above 126, and for NaN:
/// 2^126.
[[nodiscard]] float PlainExp2(float x);

/// Logarithm of x to the base 2, within 1e-6 of it. -126 for NaN and what is below 2^-126, 127 for
/// what is above 2^127.
[[nodiscard]] float PlainLog2(float x);

/// Cosine of an angle in turns from -1 to 1, within 1e-14 of it.
[[nodiscard]] double PlainCosTurns(double turns);
