// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

/// 2 1/12 s at 44100 Hz, deliberately no multiple of any encoder's frame of 1024 or 1152.
constexpr std::int32_t kUnevenFrames = 91'875;

/// 23.8 s of an envelope: what is compared of a song's opening.
constexpr std::size_t kOpeningElements = 4096;
