// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/BeatTimes.h"
#include "song/Harmony.h"

#include <cstdint>
#include <span>
#include <vector>

struct CSongProfile;

/// What the engine placed in a song, exactly.
/// Units: samples at 44100 Hz from the first one, whatever the file's rate.
struct CEnginePositions {
    std::vector<std::int64_t> m_vGrid;  // half beats
    std::vector<std::int64_t> m_vMarks; // measures that stand out
    std::int64_t m_nIntroEnd = 0;
    std::int64_t m_nOutroStart = 0;
    std::vector<std::int64_t> m_vFades; // at each the song before is turned down by a step more
    std::vector<std::int64_t> m_vIntroMixes;
    std::vector<std::int64_t> m_vOutroMixes;

    bool operator==(CEnginePositions const&) const = default;
};

/// An excerpt by which a song is found again.
struct CPrint {
    std::int64_t m_nMicroseconds = 0; // where it begins
    std::vector<float> m_vValues;     // without a unit; none for a song that is too short

    bool operator==(CPrint const&) const = default;
};

/// Levels in 255 equal steps from 0 to the highest one.
struct CLevels {
    float m_fTop = 0.0f;         // what the level 255 stands for; 0: all are 0
    std::int64_t m_nSamples = 0; // at 44100 Hz, that each level stands for
    std::vector<std::uint8_t> m_vLevels;

    bool operator==(CLevels const&) const = default;
};

/// What one hearing finds in a song, without its sound: all that is told of it and kept. A plain
/// value.
struct CSongFacts {
    std::int64_t m_nFrames = 0;          // of the song, at the file's own rate
    float m_fBpm = 0.0f;                 // 0 for none
    float m_fHeardBpm = 0.0f;            // before the rule for short clips; 0 for none
    CHarmony m_key;                      // by the bass notes: without confidence and tuning
    CHarmony m_harmony;                  // by chords and melody
    CBeatTimes m_beats;                  // in whole microseconds
    std::vector<float> m_vEnergyAccents; // weights of the half beats of a measure
    std::vector<float> m_vBassAccents;   // likewise, below 120 Hz
    CEnginePositions m_positions;
    CPrint m_print;
    CLevels m_opening; // of all frequencies, the first 4096
    CLevels m_energy;  // the same of the whole song; none unless envelopes were asked for
    CLevels m_bass;    // peaks below 120 Hz; likewise

    bool operator==(CSongFacts const&) const = default;
};

/// `values`, which are 0 and above, as levels: each the nearest one, halves upwards. What isn't
/// finite counts as 0.
[[nodiscard]] CLevels LevelsOf(std::span<float const> values, std::int64_t samplesEach);

/// The facts of a profile for which beats, harmony and envelopes were asked for; what wasn't is
/// missing. `keepsEnvelopes`: those of the whole song are among them.
[[nodiscard]] CSongFacts FactsOf(CSongProfile const& profile, bool keepsEnvelopes);
