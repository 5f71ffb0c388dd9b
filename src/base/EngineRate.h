// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// What songs are decoded to and every stage of the engine works at, in samples per second.
inline constexpr std::uint32_t kEngineRateHz = 44100; // Fixed.
