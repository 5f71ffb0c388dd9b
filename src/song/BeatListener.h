// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

constexpr std::size_t kAttackHopSamples = 32;  // Fixed: 0.73 ms at 44100 Hz.
constexpr std::size_t kBandHopSamples = 256;   // Fixed: 5.8 ms, as the engine's envelopes.
constexpr std::size_t kPitchHopSamples = 4096; // Fixed: 93 ms.
constexpr std::size_t kBeatBands = 4;          // Fixed: bass, low and high middle, treble.
constexpr std::size_t kBeatPitches = 48;       // Fixed: four octaves of semitones from 55 Hz up.

/// Levels of each band.
using CBandRows = std::vector<std::array<std::uint8_t, kBeatBands>>;

/// What the placing of beats needs of a song's sound, as levels of one byte: an eighth of an octave
/// of energy (0.38 dB) a step, 0 for silence. 2.6 kB a second. A plain value.
struct CBeatCurves {
    std::vector<std::uint8_t> m_vAttack; // of the samples' differences, so that treble counts most
    CBandRows m_vBands;
    std::vector<std::array<std::uint8_t, kBeatPitches>> m_vPitches;
};

/// A low-pass of two equal poles.
struct CTwoPoles {
    float m_fShare = 0.0f; // of what is new, each time
    float m_fFirst = 0.0f;
    float m_fSecond = 0.0f;

    float Next(float x) {
        m_fFirst += m_fShare * (x - m_fFirst);
        m_fSecond += m_fShare * (m_fFirst - m_fSecond);
        return m_fSecond;
    }
};

/// Makes the curves while a song's samples pass by, in blocks of any length; the blocks don't show
/// in the result. A last part of a step is left out. What isn't finite counts as silence.
/// Units: samples in [-1, 1], 44100 a second.
/// Thread: one thread at a time.
class CBeatListener {
public:
    CBeatListener();

    void Add(std::span<float const> samples);

    /// The curves so far, of which the listener then has none.
    [[nodiscard]] CBeatCurves Take() { return std::move(m_curves); }

private:
    static constexpr std::size_t kThinning =
        8; // Fixed: pitches are heard at an eighth of the rate.
    using CHop = std::array<float, kAttackHopSamples>;
    using CPitchRow = std::array<float, kBeatPitches>;

    void HearHop();
    void HearAttack();
    void HearBands();
    void HearPitches();
    void Resonate(float x);
    void StoreBands();
    void StorePitches();
    void Settle();

    CBeatCurves m_curves;
    CHop m_hop{};
    std::size_t m_nFilled = 0; // samples in `m_hop`
    std::size_t m_nHops = 0;
    float m_fLast = 0.0f; // the sample before the hop
    std::array<CTwoPoles, kBeatBands> m_edges{};
    std::array<float, kBeatBands> m_bandSums{};
    CTwoPoles m_thinner;
    CPitchRow m_cosines{}; // of the turn in one step, times what is left after it
    CPitchRow m_sines{};
    CPitchRow m_shares{}; // of what is new
    CPitchRow m_real1{};  // two resonators in a row for each pitch
    CPitchRow m_imaginary1{};
    CPitchRow m_real2{};
    CPitchRow m_imaginary2{};
    CPitchRow m_pitchSums{};
};
