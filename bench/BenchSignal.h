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

/// Something like dance music, 120 BPM at 44100 Hz: a kick on every beat that decays within 0.1 s,
/// a bass tone on every half beat behind it, noise over all.
inline std::vector<float> MakeBenchSong(std::size_t count) {
    constexpr double kBassHertz[] = {55.0, 55.0, 65.406, 48.999};
    std::vector<float> samples = MakeBenchNoise(count);
    for (std::size_t i = 0; i < count; ++i) {
        double const second = static_cast<double>(i) / 44100.0;
        double const inBeat = std::fmod(second, 0.5);
        double const inHalf = std::fmod(second, 0.25);
        double const turn = 2.0 * std::numbers::pi;
        double const kick = 0.6 * std::exp(-inBeat / 0.1) * std::sin(turn * 50.0 * inBeat);
        double const hertz = kBassHertz[static_cast<std::size_t>(second / 2.0) % 4];
        double const bass = inBeat < 0.25 ? 0.0 : 0.3 * std::exp(-inHalf / 0.3);
        samples[i] =
            samples[i] * 0.2f + static_cast<float>(kick + bass * std::sin(turn * hertz * second));
    }
    return samples;
}

/// Bass without a pause at 44100 Hz: a loud tone with its octave, another one every second, noise
/// over all. Every crossing repeats at several periods.
inline std::vector<float> MakeBenchBassLine(std::size_t count) {
    constexpr double kHertz[] = {41.203, 55.0, 36.708, 48.999, 61.735, 43.654};
    std::vector<float> samples = MakeBenchNoise(count);
    for (std::size_t i = 0; i < count; ++i) {
        double const second = static_cast<double>(i) / 44100.0;
        double const turn =
            2.0 * std::numbers::pi * kHertz[static_cast<std::size_t>(second) % 6] * second;
        samples[i] = samples[i] * 0.1f +
                     static_cast<float>(0.3 * std::sin(turn) + 0.45 * std::sin(2.0 * turn));
    }
    return samples;
}
