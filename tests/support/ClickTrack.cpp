// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/ClickTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr double kClickRate = 44100.0;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// Numerical Recipes' 32-bit generator; the upper 24 bits become a float in [-1, 1).
class CLcg {
public:
    explicit CLcg(std::uint32_t seed) : m_nState(seed) {}

    float Next() {
        m_nState = m_nState * 1664525U + 1013904223U;
        return static_cast<float>(static_cast<std::int32_t>(m_nState >> 8U) - 0x800000) /
               8388608.0f;
    }

private:
    std::uint32_t m_nState;
};

void AddNoiseBurst(std::vector<float>& samples, std::int64_t start, double decaySeconds, float peak,
                   CLcg& lcg) {
    auto const length = static_cast<std::int64_t>(decaySeconds * 5.0 * kClickRate);
    for (std::int64_t i = 0; i < length; ++i) {
        float const level =
            peak *
            static_cast<float>(std::exp(-static_cast<double>(i) / (decaySeconds * kClickRate)));
        float const value = lcg.Next() * level;
        std::int64_t const at = start + i;
        if (at >= 0 && at < static_cast<std::int64_t>(samples.size())) {
            samples[static_cast<std::size_t>(at)] += value;
        }
    }
}

void AddTone(std::vector<float>& samples, std::int64_t start, std::int64_t length, double hertz,
             float amplitude) {
    for (std::int64_t i = 0; i < length; ++i) {
        std::int64_t const at = start + i;
        if (at >= 0 && at < static_cast<std::int64_t>(samples.size())) {
            samples[static_cast<std::size_t>(at)] +=
                amplitude *
                static_cast<float>(std::sin(kTwoPi * hertz * static_cast<double>(i) / kClickRate));
        }
    }
}

} // namespace

std::size_t SamplesIn(double seconds) {
    return static_cast<std::size_t>(std::llround(seconds * kClickRate));
}

std::int64_t ClickPosition(CClickTrack const& track, int index) {
    return std::llround((track.m_dStartSeconds + index * 60.0 / track.m_dBpm) * kClickRate);
}

void AddClick(std::vector<float>& samples, std::int64_t start, CClickShape const& shape,
              float gain) {
    auto const length = static_cast<std::int64_t>(SamplesIn(shape.m_dLengthSeconds));
    for (std::int64_t i = 0; i < length; ++i) {
        std::int64_t const at = start + i;
        if (at < 0 || at >= static_cast<std::int64_t>(samples.size())) {
            continue;
        }
        double const time = static_cast<double>(i) / kClickRate;
        double const value =
            std::exp(-time / shape.m_dDecaySeconds) * std::cos(kTwoPi * shape.m_dToneHz * time);
        samples[static_cast<std::size_t>(at)] += gain * shape.m_fPeak * static_cast<float>(value);
    }
}

std::vector<float> MakeClickTrack(CClickTrack const& track) {
    std::vector<float> samples = MakeSilence(track.m_dSeconds);
    auto const end = static_cast<std::int64_t>(samples.size());
    for (int index = 0; ClickPosition(track, index) < end; ++index) {
        bool const accent = track.m_nAccentEvery > 0 && index % track.m_nAccentEvery == 0;
        AddClick(samples, ClickPosition(track, index), track.m_shape,
                 accent ? track.m_fAccentGain : 1.0f);
    }
    return samples;
}

std::vector<float> MakeClickTrack(double bpm, double seconds) {
    CClickTrack track;
    track.m_dBpm = bpm;
    track.m_dSeconds = seconds;
    return MakeClickTrack(track);
}

std::vector<float> MakeSilence(double seconds) {
    return std::vector<float>(SamplesIn(seconds), 0.0f);
}

std::vector<float> MakeNoise(double seconds, float amplitude, std::uint32_t seed) {
    std::vector<float> samples(SamplesIn(seconds));
    CLcg lcg(seed);
    std::ranges::generate(samples, [&] { return amplitude * lcg.Next(); });
    return samples;
}

std::vector<float> MakeSine(double frequencyHz, double seconds, float amplitude) {
    std::vector<float> samples = MakeSilence(seconds);
    AddTone(samples, 0, static_cast<std::int64_t>(samples.size()), frequencyHz, amplitude);
    return samples;
}

std::vector<float> MakeSong(double bpm, double seconds) {
    constexpr CClickShape kKick{55.0, 0.08, 0.3, 0.5f};
    constexpr std::array<double, 4> kBassHertz{55.0, 55.0, 43.654, 48.999};
    constexpr std::array<double, 3> kChordHertz{220.0, 261.626, 329.628};
    std::vector<float> samples = MakeSilence(seconds);
    CClickTrack const halfBeats{bpm * 2.0, seconds, 0.0, 0, 1.0f, {}};
    auto const end = static_cast<std::int64_t>(samples.size());
    CLcg lcg(1);
    for (int index = 0; ClickPosition(halfBeats, index) < end; ++index) {
        std::int64_t const start = ClickPosition(halfBeats, index);
        std::int64_t const next = ClickPosition(halfBeats, index + 1);
        std::int64_t const eightMeasures = ClickPosition(halfBeats, 64);
        bool const full = start >= eightMeasures && start < end - eightMeasures;
        AddNoiseBurst(samples, start, 0.02, index % 2 == 0 ? 0.06f : 0.1f, lcg);
        if (full && index % 2 == 0) {
            AddClick(samples, start, kKick);
        }
        if (full && index % 4 == 2) {
            AddNoiseBurst(samples, start, 0.05, 0.25f, lcg);
        }
        if (full) {
            AddTone(samples, start, (next - start) * 3 / 4,
                    kBassHertz[static_cast<std::size_t>(index / 8 % 4)], 0.15f);
        }
        for (double const hertz : kChordHertz) {
            AddTone(samples, start, next - start, hertz, full ? 0.04f : 0.03f);
        }
    }
    return samples;
}
