// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

/// Noise in [-1, 1) with a swell every half second at 44100 Hz, so that envelopes have peaks. The
/// same samples on every run.
inline std::vector<float> MakeBenchNoise(std::size_t count) {
    std::vector<float> samples(count);
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525U + 1013904223U;
        auto const noise = static_cast<float>(state >> 8U) / 8388608.0f - 1.0f;
        auto const phase = static_cast<float>(i % 22050) / 22050.0f;
        samples[i] = noise * (1.0f - phase) * (1.0f - phase);
    }
    return samples;
}

/// A bass tone at `hertz` of amplitude 0.5 with noise of 0.1 over it, at 44100 Hz.
inline std::vector<float> MakeBenchBass(std::size_t count, double hertz) {
    std::vector<float> samples = MakeBenchNoise(count);
    for (std::size_t i = 0; i < count; ++i) {
        double const turn = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / 44100.0;
        samples[i] = samples[i] * 0.1f + 0.5f * static_cast<float>(std::sin(turn));
    }
    return samples;
}
