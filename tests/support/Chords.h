// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

/// Plays tones of six falling harmonics one after another, mono at 44100 Hz.
class CChords {
public:
    /// `a4` is the frequency of the A above middle C, in Hz.
    explicit CChords(double a4 = 440.0) : m_dA4(a4) {}

    /// `notes` sound together; they are MIDI numbers, 69 for the A that is tuned to.
    void Play(std::vector<int> const& notes, double seconds);

    /// Tonic, subdominant, dominant, tonic, each a bass note and a triad of a second and a half;
    /// a minor key's dominant is a major triad. `tonic` is 0 for C.
    void PlayCadence(int tonic, bool minor);

    [[nodiscard]] std::vector<float> const& Samples() const { return m_vSamples; }

private:
    void PlayTriad(int root, int third);

    double m_dA4;
    std::vector<float> m_vSamples;
};
