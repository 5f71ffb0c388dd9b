// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// Status codes of the tag layer, the foundation and the note and key classes.
/// Callers test for failure with `status < 0`.
using CStatus = std::int32_t;

constexpr CStatus kStatusOk = 0;      // Fixed: success, or yes.
constexpr CStatus kStatusNothing = 1; // Fixed: no, or nothing to do.
constexpr CStatus kStatusFailure =
    static_cast<CStatus>(0x80000008U); // Fixed: general failure, negative as a signed number.
