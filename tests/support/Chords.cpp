// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Chords.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

constexpr double kChordRate = 44100.0;
constexpr int kHarmonics = 6;

} // namespace

void CChords::Play(std::vector<int> const& notes, double seconds) {
    std::size_t const first = m_vSamples.size();
    m_vSamples.resize(first + static_cast<std::size_t>(seconds * kChordRate));
    for (int const note : notes) {
        double const hertz = m_dA4 * std::exp2((note - 69) / 12.0);
        for (int harmonic = 1; harmonic <= kHarmonics; ++harmonic) {
            double const step = 2.0 * std::numbers::pi * hertz * harmonic / kChordRate;
            // x[n] = 2 cos(step) x[n - 1] - x[n - 2] is a sine.
            double const turn = 2.0 * std::cos(step);
            double now = 0.0;
            double before = -0.08 / (harmonic * harmonic) * std::sin(step);
            for (std::size_t i = first; i < m_vSamples.size(); ++i) {
                m_vSamples[i] += static_cast<float>(now);
                double const next = turn * now - before;
                before = now;
                now = next;
            }
        }
    }
}

void CChords::PlayTriad(int root, int third) {
    int const tone = root % 12;
    Play({36 + tone, 60 + tone, 60 + tone + third, 67 + tone}, 1.5);
}

void CChords::PlayCadence(int tonic, bool minor) {
    int const third = minor ? 3 : 4;
    PlayTriad(tonic, third);
    PlayTriad(tonic + 5, third);
    PlayTriad(tonic + 7, 4);
    PlayTriad(tonic, third);
}
