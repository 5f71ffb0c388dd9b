// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/ToneChroma.h"
#include "song/ToneSpectrum.h"

#include <cstddef>
#include <cstdint>
#include <span>

enum class EKeyMode : std::uint8_t { None, Major, Minor };

/// The key that a song's chords and melody speak for. A plain value.
struct CHarmony {
    EKeyMode m_eMode = EKeyMode::None; // None: no tone was heard; the rest is 0 then
    std::int32_t m_nTonic = 0;         // pitch class, 0 for C up to 11 for B
    float m_fConfidence = 0.0f;        // how likely it is the song's key, 0 to 1
    float m_fTuningCents = 0.0f;       // above A = 440 Hz, from -50 to 50

    bool operator==(CHarmony const&) const = default;
};

/// Listens to a song as it goes by and names its key. Holds less than a second of sound,
/// however long the song is. The same samples give the same bits, in blocks of any size.
/// Thread: one thread at a time.
class CHarmonyEar {
public:
    /// The next samples, mono at 44100 Hz.
    void Add(std::span<float const> samples);

    /// The key of all that was added. What is added afterwards counts as well.
    [[nodiscard]] CHarmony Finish();

    /// What the key is judged by.
    [[nodiscard]] CToneChroma const& Chroma() const { return m_chroma; }

private:
    void Hear();

    CToneSpectrum m_spectrum;
    CToneChroma m_chroma;
    std::size_t m_nToSkip = 0; // samples
};
