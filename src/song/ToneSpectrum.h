// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

constexpr std::size_t kToneDecimation = 8; // Fixed: 44100 Hz to 5512.5, enough for tones to 1760.
constexpr std::size_t kToneFrame = 4096;   // Fixed: decimated samples of a frame, 0.74 s.
constexpr std::size_t kToneFrameSamples = kToneFrame * kToneDecimation; // at 44100 Hz
constexpr std::size_t kToneBins = 1344; // Derived: 1760 Hz and three semitones, at 1.346 Hz a bin.

/// Magnitudes of one frame's spectrum, bin by bin of 44100 / `kToneFrameSamples` Hz from 0 on.
using CToneMagnitudes = std::array<float, kToneBins>;

/// Works out spectra of frames: decimation by binomial filters, a Hann window, a Fourier transform.
/// Additions, multiplications and square roots only, in an order of its own: the same bits on every
/// machine. Thread: one thread at a time.
class CToneSpectrum {
public:
    CToneSpectrum();

    /// The frame's next samples at 44100 Hz. Returns: how many were taken, fewer than there are
    /// when the frame is full.
    std::size_t Take(std::span<float const> samples);

    /// Samples in the frame, `kToneFrameSamples` when it is full.
    [[nodiscard]] std::size_t Taken() const { return m_nTaken; }

    /// The spectrum of the frame, with silence for what is missing. The next frame begins.
    void Analyze(CToneMagnitudes* magnitudes);

private:
    void Halve(std::span<float const> samples);
    void Decimate();
    void Transform();
    void Untangle(CToneMagnitudes* magnitudes) const;

    std::array<float, 2> m_waiting{}; // at 44100 Hz, for the filter's next taps
    std::size_t m_nWaiting = 0;
    std::size_t m_nTaken = 0;
    std::size_t m_nHalf = 0;       // values in it
    std::vector<float> m_vHalf;    // 22050 Hz
    std::vector<float> m_vQuarter; // 11025 Hz
    std::vector<float> m_vTones;   // 5512.5 Hz
    // The transform's complex numbers, real and imaginary parts apart, and room for the other half
    // of each step.
    std::vector<float> m_vRe, m_vIm, m_vOtherRe, m_vOtherIm;
};
