// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// CBeatListener::Add
//   HearHop            32 samples at a time
//     HearAttack       energy of the differences
//     HearBands        energy of four bands, summed up over 256 samples
//     HearPitches      energy of 48 semitones, summed up over 4096 samples
//     Settle           states that are nearly 0 become 0

#include "song/BeatListener.h"

#include "base/EngineRate.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace {

constexpr double kTwoPi = 6.2831853071796;       // Standard: ISO 80000-2.
constexpr double kSemitone = 1.0594630943592953; // Derived: the twelfth root of 2.
constexpr double kLowestPitchHz = 55.0;          // Fixed: A1, near a bass guitar's E1.
constexpr double kPitchWidth = 17.0; // Derived: 1 / (kSemitone - 1), pitch over band width.
constexpr double kShortestRingSeconds = 0.06; // Tuned: beat_model.

// Tuned: beat_model; edges of the bands, the treble being what lies above the last.
constexpr std::array<double, kBeatBands> kEdgesHz = {120.0, 500.0, 2500.0, 6000.0};
constexpr double kThinnerHz = 1200.0; // Derived: 26 dB down where 5512.5 Hz folds back.

constexpr int kWaveTerms = 16;      // Derived: 1 / 16! is below 1e-13, for arguments up to 1.3.
constexpr float kQuiet = 1e-18f;    // Fixed: a state below it has no level, nor its square.
constexpr float kLoud = 1e6f;       // Fixed: no sum of samples in [-1, 1] comes near it.
constexpr int kLevelShift = 20;     // Derived: leaves the exponent and 3 bits of a float.
constexpr int kOneLevel = 127 << 3; // Derived: those bits of 1.0f.
constexpr int kAttackFloor = kOneLevel + (8 - 32) * 8; // Derived: 2^8 > 32 * 2 * 2 is the top.
constexpr int kBandFloor = kOneLevel + (9 - 32) * 8;   // Derived: 2^9 > 256.
constexpr int kPitchFloor = kOneLevel + (7 - 32) * 8;  // Derived: 2^7 > 64.

/// Steps of an eighth of an octave above `floor`, straight within an octave.
std::uint8_t LevelOf(float energy, int floor) {
    if (!(energy > 0.0f)) {
        return 0;
    }
    auto const eighths = static_cast<int>(std::bit_cast<std::uint32_t>(energy) >> kLevelShift);
    return static_cast<std::uint8_t>(std::clamp(eighths - floor, 0, 255));
}

/// e^x, cos x and sin x out of additions and multiplications, for |x| < 1.3.
double SeriesExp(double x) {
    double sum = 1.0;
    for (int n = kWaveTerms; n > 0; --n) {
        sum = 1.0 + sum * x / static_cast<double>(n);
    }
    return sum;
}

double SeriesCos(double x) {
    double sum = 1.0;
    for (int n = kWaveTerms; n > 0; n -= 2) {
        sum = 1.0 - sum * x * x / static_cast<double>(n * (n - 1));
    }
    return sum;
}

double SeriesSin(double x) {
    double sum = 1.0;
    for (int n = kWaveTerms; n > 0; n -= 2) {
        sum = 1.0 - sum * x * x / static_cast<double>(n * (n + 1));
    }
    return sum * x;
}

/// What a low-pass of one pole takes of each new sample.
float ShareFor(double edgeHz) {
    return static_cast<float>(1.0 - SeriesExp(-kTwoPi * edgeHz / kEngineRateHz));
}

void SettleState(float& state) {
    float const size = std::abs(state);
    state = size > kQuiet && size < kLoud ? state : 0.0f;
}

} // namespace

CBeatListener::CBeatListener() {
    for (std::size_t i = 0; i < kBeatBands; ++i) {
        m_edges[i].m_fShare = ShareFor(kEdgesHz[i]);
    }
    m_thinner.m_fShare = ShareFor(kThinnerHz);
    double pitch = kLowestPitchHz;
    double const rate = kEngineRateHz / static_cast<double>(kThinning);
    for (std::size_t i = 0; i < kBeatPitches; ++i) {
        double const ring = std::max(kShortestRingSeconds, kPitchWidth * 2.0 / (kTwoPi * pitch));
        double const left = SeriesExp(-1.0 / (ring * rate));
        m_cosines[i] = static_cast<float>(left * SeriesCos(kTwoPi * pitch / rate));
        m_sines[i] = static_cast<float>(left * SeriesSin(kTwoPi * pitch / rate));
        m_shares[i] = static_cast<float>(1.0 - left);
        pitch *= kSemitone;
    }
}

void CBeatListener::Add(std::span<float const> samples) {
    while (!samples.empty()) {
        std::size_t const taken = std::min(samples.size(), m_hop.size() - m_nFilled);
        for (std::size_t i = 0; i < taken; ++i) {
            m_hop[m_nFilled + i] = std::abs(samples[i]) < kLoud ? samples[i] : 0.0f;
        }
        m_nFilled += taken;
        samples = samples.subspan(taken);
        if (m_nFilled == m_hop.size()) {
            HearHop();
            m_nFilled = 0;
        }
    }
}

void CBeatListener::HearHop() {
    HearAttack();
    HearBands();
    HearPitches();
    ++m_nHops;
    if (m_nHops % (kBandHopSamples / kAttackHopSamples) == 0) {
        StoreBands();
        Settle();
    }
    if (m_nHops % (kPitchHopSamples / kAttackHopSamples) == 0) {
        StorePitches();
    }
}

void CBeatListener::HearAttack() {
    float energy = 0.0f;
    for (float const sample : m_hop) {
        float const step = sample - m_fLast;
        energy += step * step;
        m_fLast = sample;
    }
    m_curves.m_vAttack.push_back(LevelOf(energy, kAttackFloor));
}

void CBeatListener::HearBands() {
    for (float const sample : m_hop) {
        float const bass = m_edges[0].Next(sample);
        float const low = m_edges[1].Next(sample);
        float const middle = m_edges[2].Next(sample);
        float const treble = sample - m_edges[3].Next(sample);
        m_bandSums[0] += bass * bass;
        m_bandSums[1] += (low - bass) * (low - bass);
        m_bandSums[2] += (middle - low) * (middle - low);
        m_bandSums[3] += treble * treble;
    }
}

void CBeatListener::HearPitches() {
    for (std::size_t i = 0; i < m_hop.size(); i += kThinning) {
        float sum = 0.0f;
        for (std::size_t j = 0; j < kThinning; ++j) {
            sum += m_thinner.Next(m_hop[i + j]);
        }
        Resonate(sum / static_cast<float>(kThinning));
    }
}

void CBeatListener::Resonate(float x) {
    for (std::size_t i = 0; i < kBeatPitches; ++i) {
        float const real1 =
            m_cosines[i] * m_real1[i] - m_sines[i] * m_imaginary1[i] + m_shares[i] * x;
        m_imaginary1[i] = m_sines[i] * m_real1[i] + m_cosines[i] * m_imaginary1[i];
        m_real1[i] = real1;
        float const real2 =
            m_cosines[i] * m_real2[i] - m_sines[i] * m_imaginary2[i] + m_shares[i] * real1;
        m_imaginary2[i] = m_sines[i] * m_real2[i] + m_cosines[i] * m_imaginary2[i] +
                          m_shares[i] * m_imaginary1[i];
        m_real2[i] = real2;
        m_pitchSums[i] += real2 * real2 + m_imaginary2[i] * m_imaginary2[i];
    }
}

void CBeatListener::StoreBands() {
    std::array<std::uint8_t, kBeatBands> levels{};
    for (std::size_t i = 0; i < kBeatBands; ++i) {
        levels[i] = LevelOf(std::exchange(m_bandSums[i], 0.0f), kBandFloor);
    }
    m_curves.m_vBands.push_back(levels);
}

void CBeatListener::StorePitches() {
    std::array<std::uint8_t, kBeatPitches> levels{};
    for (std::size_t i = 0; i < kBeatPitches; ++i) {
        levels[i] = LevelOf(std::exchange(m_pitchSums[i], 0.0f), kPitchFloor);
    }
    m_curves.m_vPitches.push_back(levels);
}

/// Keeps what rings out in digital silence from becoming subnormal, which is slow.
void CBeatListener::Settle() {
    for (CTwoPoles& edge : m_edges) {
        SettleState(edge.m_fFirst);
        SettleState(edge.m_fSecond);
    }
    SettleState(m_thinner.m_fFirst);
    SettleState(m_thinner.m_fSecond);
    for (CPitchRow* row : {&m_real1, &m_imaginary1, &m_real2, &m_imaginary2}) {
        std::ranges::for_each(*row, SettleState);
    }
}
