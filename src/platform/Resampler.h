// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"
#include "platform/DecodedAudio.h"

#include <cstdint>
#include <span>

/// Brings one channel of samples in [-1, 1] from `rate` to 44100 Hz, by way of 16 bits, as a file
/// of that rate would be. All of them are heard, whatever the rate.
/// Returns: `BadRate`, `TooLong` for more than 2^31 - 1 samples, `NoMemory`; `None` with the
/// samples in `audio`.
EDecodeProblem Resample(std::span<float const> samples, std::uint32_t rate, CDecodedAudio& audio);
