// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Generated signals, all mono at 44100 Hz with values in [-1, 1]. The same arguments give the same
// samples on every run.

/// One click: a tone that starts at its peak amplitude and decays exponentially.
struct CClickShape {
    double m_dToneHz = 1000.0;
    double m_dDecaySeconds = 0.02; // time in which the amplitude falls to 1/e
    double m_dLengthSeconds = 0.1; // the tone is cut off here
    float m_fPeak = 0.6f;
};

/// A steady rhythm.
struct CClickTrack {
    double m_dBpm = 120.0;
    double m_dSeconds = 60.0;
    double m_dStartSeconds = 0.0; // time of the first click
    int m_nAccentEvery = 0;       // every n-th click, the first included, is louder; 0: none
    float m_fAccentGain = 1.5f;
    CClickShape m_shape;
};

/// Number of samples in `seconds`, rounded to the nearest.
std::size_t SamplesIn(double seconds);

/// Sample position of click `index`, rounded to the nearest sample; clicks never drift.
std::int64_t ClickPosition(CClickTrack const& track, int index);

std::vector<float> MakeClickTrack(CClickTrack const& track);
std::vector<float> MakeClickTrack(double bpm, double seconds);

/// Adds one click to `samples` at `start`; what falls outside is dropped.
void AddClick(std::vector<float>& samples, std::int64_t start, CClickShape const& shape,
              float gain = 1.0f);

std::vector<float> MakeSilence(double seconds);

/// White noise, uniform in [-amplitude, amplitude), from a 32-bit linear congruential generator.
std::vector<float> MakeNoise(double seconds, float amplitude, std::uint32_t seed = 1);

std::vector<float> MakeSine(double frequencyHz, double seconds, float amplitude);

/// Something like a song: kick on the beats, snare on the second and fourth, hats on the half
/// beats, a bass line and a chord in A minor, a quiet intro and outro of 8 measures each.
std::vector<float> MakeSong(double bpm, double seconds);
