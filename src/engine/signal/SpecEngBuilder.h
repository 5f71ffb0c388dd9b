// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Spectral energy of one frame: Hamming window, real FFT in place, sum of the bins' magnitudes.
/// The tables are built once; a frame allocates nothing.
/// Frame length N: a power of two, at least 4. Any other length makes a builder without tables,
/// whose results are all 0.
/// Scale: a sine of amplitude 1 in the middle of a bin gives 1 before windowing; the spectrum is
/// 2 / N times the plain discrete Fourier transform.
/// Thread: one thread at a time.
class CPfSpecEngBuilder {
public:
    /// True for the frame lengths that can be transformed.
    [[nodiscard]] static bool IsFrameLength(std::uint16_t frameLength);

    explicit CPfSpecEngBuilder(std::uint16_t frameLength);
    CPfSpecEngBuilder(CPfSpecEngBuilder const&) = delete;
    CPfSpecEngBuilder& operator=(CPfSpecEngBuilder const&) = delete;
    virtual ~CPfSpecEngBuilder() = default;

    /// Builds the tables, the window and the work buffer for `frameLength` samples.
    void InitializeFFT(std::uint16_t frameLength);

    /// Drops what `InitializeFFT` built; results are all 0 from then on.
    void EndFFT();

    /// Transforms N real values in place. The pair of bin k stands at float index
    /// `GetBinIndex(k)`; bin 0 holds the sum of the DC and the Nyquist term, and 0.
    /// Shape: `frameLength` must be the length the tables were built for, else nothing happens.
    void RealFFT(float* data, std::uint16_t frameLength) const;

    /// Windows a copy of `frame`, transforms it and writes the magnitudes of bins 0 .. N/2 - 1.
    void DoFFTToMagnitude(float const* frame, std::uint16_t frameLength, float* magnitudes);

    /// Sum of the magnitudes of bins 1 .. N/2 - 1, in ascending order.
    float GetSpecEnergy(float const* frame);

    /// Energies of `count` consecutive frames: `GetSpecEnergy` of each, bit for bit, with up to
    /// eight frames side by side where the processor allows. Shape: reads frames[0, count * N),
    /// writes energies[0, count).
    void GetSpecEnergies(float const* frames, std::size_t count, float* energies);

    /// Float index at which `RealFFT` leaves the real part of bin k, 0 <= k < N/2; the imaginary
    /// part follows.
    [[nodiscard]] std::int32_t GetBinIndex(std::int32_t k) const;

private:
    /// One float of every lane; rows of them make the lanes' work buffer, aligned for vectors.
    struct alignas(32) CLaneRow {
        float m_fLanes[8];
    };

    void RunStages(float* data) const;
    void SplitSpectrum(float* data) const;

    std::vector<std::int32_t> m_vBitReversal; // N/2 float indices, even
    std::vector<float> m_vTwiddles;           // N/2 pairs at bit-reversed places
    std::vector<float> m_vWindow;
    std::vector<float> m_vWork;
    std::vector<CLaneRow> m_vLaneWork; // N rows
    std::vector<float> m_vMagnitudes;
    std::uint16_t m_nFrameLength = 0;
};
