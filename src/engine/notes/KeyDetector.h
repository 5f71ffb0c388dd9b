// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"

#include <array>
#include <cstdint>

class CPfNoteMap;
class CProfiler;
class CProfileResults;

constexpr std::size_t kPitchClasses = 12; // Standard: semitones of the octave, equal temperament.

/// Weight of each pitch above the tonic, index 0 being the tonic.
using CKeyProfile = std::array<float, kPitchClasses>;

// Deliberate: the major profile takes 0.1 off for each tone outside its scale, the minor one takes
// nothing off; this decides close calls. Fixed: the weights.
inline constexpr CKeyProfile g_fMajorKeyMap = {0.16f, -0.1f, 0.1f,  -0.1f,  0.1f,  0.145f,
                                               -0.1f, 0.1f,  -0.1f, 0.135f, -0.1f, 0.1f};
inline constexpr CKeyProfile g_fMinorKeyMap = {0.352f, 0.0f,   0.114f, 0.176f, 0.0f,   0.073f,
                                               0.0f,   0.066f, 0.034f, 0.0f,   0.183f, 0.0f};

/// One weight per pitch class, 0 for C up to 11 for B: a histogram of notes or a key's profile.
/// Thread: one thread at a time.
class CPfKeyMap {
public:
    CPfKeyMap() = default;
    virtual ~CPfKeyMap() = default;

    /// Adds 1 to the note's pitch class. Returns: `kStatusOk`, as every operation here.
    CStatus AddNote(std::uint16_t note);

    /// Divides every weight by the number of notes added since the last time; nothing happens when
    /// there were none.
    CStatus Normalize();

    /// Takes the profile with its tonic at pitch class `key`.
    CStatus LoadStandardMap(CKeyProfile const& profile, std::uint16_t key);

    /// Stores the sum of the products of both maps' weights, from C up in single precision.
    CStatus CalcMapCorrelation(CPfKeyMap const* other, float* out) const;

    /// Hook for a listing of the weights; does nothing.
    CStatus ReportDistribution() const { return kStatusOk; }

    /// Weight of a pitch class, taken modulo 12.
    [[nodiscard]] float GetWeight(std::uint16_t pitchClass) const {
        return m_fBins[pitchClass % kPitchClasses];
    }

private:
    std::array<float, kPitchClasses> m_fBins{};
    std::uint32_t m_nCount = 0; // notes since the last normalisation, 1 after it
};

/// Names the key that the bass notes speak for.
class CPfKeyDetector {
public:
    static constexpr std::uint16_t kNoKey = 0;
    static constexpr std::uint16_t kMinor = 1;
    static constexpr std::uint16_t kMajor = 2;

    CPfKeyDetector() = default;
    virtual ~CPfKeyDetector() = default;

    /// Stores in `results` the tonic, 0 for C up to 11 for B, and the mode of the key whose profile
    /// agrees best with the notes. Equal agreement goes to minor before major and to the lower
    /// tonic; without any positive agreement both are 0.
    /// Returns: `kStatusNothing`, nothing stored, when the profiler is cancelled.
    /// Thread: worker.
    static CStatus DetectKey(CProfiler* profiler, CPfNoteMap* notes, CProfileResults* results);
};
