// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/ToneSpectrum.h"

#include <array>
#include <cstddef>
#include <cstdint>

constexpr std::size_t kToneNotes = 61; // Derived: 55 to 1760 Hz, both ends included.
constexpr std::size_t kToneClasses = 12;
constexpr std::size_t kToneTriads = 24; // major from C up, then minor from C up

/// Shares of the pitch classes, C first, or of the triads; each adds up to 1, or to 0 when nothing
/// was heard.
struct CToneShares {
    std::array<float, kToneClasses> m_low{};    // 55 to 208 Hz
    std::array<float, kToneClasses> m_middle{}; // 220 to 831 Hz
    std::array<float, kToneClasses> m_high{};   // 880 to 1760 Hz
    std::array<float, kToneClasses> m_bass{};   // lowest note of each frame
    std::array<float, kToneTriads> m_triads{};  // likeliest triad of each frame
};

/// Which notes sound how much, summed over the frames of a song. Peaks of the spectrum are taken
/// for tones; the tuning is estimated as they come. Thread: one thread at a time.
class CToneChroma {
public:
    void Add(CToneMagnitudes const& magnitudes);

    [[nodiscard]] CToneShares Shares() const;

    /// How far the tuning lies above A = 440 Hz, in cents from -50 to 50.
    [[nodiscard]] float TuningCents() const;

    /// How well the tones keep to that tuning: 1 when all lie on its notes, about 0 for noise and
    /// for voices that glide.
    [[nodiscard]] float TuningClarity() const;

    /// Frames that had a tone in them.
    [[nodiscard]] std::int32_t Frames() const { return m_nFrames; }

private:
    using CNotes = std::array<float, kToneNotes>;

    struct CPeak {
        float m_fNote; // semitones above 55 Hz
        float m_fWeight;
    };
    struct CPeaks {
        std::array<CPeak, kToneBins / 2> m_list;
        std::size_t m_nCount = 0;
    };

    /// Returns: the peaks' part of the whole spectrum.
    static float FindPeaks(CToneMagnitudes const& magnitudes, CPeaks* peaks);
    void AddTuning(CPeaks const& peaks);
    [[nodiscard]] CNotes NotesOf(CPeaks const& peaks) const;
    void AddBass(CNotes const& notes, float weight);
    void AddTriad(CNotes const& notes);

    CNotes m_notes{};
    std::array<float, kToneClasses> m_bass{};
    std::array<float, kToneTriads> m_triads{};
    double m_dTuningCosine = 0.0;
    double m_dTuningSine = 0.0;
    double m_dTuningWeight = 0.0;
    float m_fTuning = 0.0f; // semitones
    std::int32_t m_nFrames = 0;
};
