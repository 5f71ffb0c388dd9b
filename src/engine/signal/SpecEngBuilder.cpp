// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// GetSpecEnergy
//   DoFFTToMagnitude     window a copy of the frame
//     RealFFT
//       RunStages        N/2 complex points, decimation in frequency, half the scale per stage
//       SplitSpectrum    the complex spectrum of pairs becomes that of N real values
//   sum of the bins above 0
//
// The method: a real sequence of N values is transformed as N/2 complex ones and split
// afterwards (Cooley, Lewis, Welch, "The Fast Fourier Transform Algorithm", 1970).

#include "engine/signal/SpecEngBuilder.h"

#include "engine/signal/SpecEngLanes.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi; // Derived: one turn in radians.
constexpr double kHammingOffset = 0.54;           // Standard: Hamming window.
constexpr double kHammingSwing = 0.46;            // Derived: 1 - 0.54.
constexpr float kHalf = 0.5f;                     // Fixed: scale of every stage.
constexpr std::uint16_t kShortestFrame = 4;       // Fixed: two complex points.

/// Float index of complex point `point` of `points` in bit-reversed order.
std::int32_t ReverseBits(std::int32_t point, std::int32_t points) {
    std::int32_t reversed = 0;
    for (std::int32_t mask = points / 2; mask > 0; mask /= 2) {
        reversed = reversed / 2 + ((point & mask) != 0 ? points : 0);
    }
    return reversed;
}

} // namespace

bool CPfSpecEngBuilder::IsFrameLength(std::uint16_t frameLength) {
    return frameLength >= kShortestFrame && std::has_single_bit(frameLength);
}

CPfSpecEngBuilder::CPfSpecEngBuilder(std::uint16_t frameLength) {
    InitializeFFT(frameLength);
}

void CPfSpecEngBuilder::InitializeFFT(std::uint16_t frameLength) {
    EndFFT();
    m_nFrameLength = frameLength;
    m_vMagnitudes.resize(frameLength);
    if (!IsFrameLength(frameLength)) {
        return;
    }
    std::size_t const length = frameLength;
    std::int32_t const points = frameLength / 2;
    m_vBitReversal.resize(length / 2);
    m_vTwiddles.resize(length);
    for (std::int32_t i = 0; i < points; ++i) {
        std::int32_t const at = ReverseBits(i, points);
        double const angle = kTwoPi * i / frameLength;
        m_vBitReversal[static_cast<std::size_t>(i)] = at;
        m_vTwiddles[static_cast<std::size_t>(at)] = static_cast<float>(std::sin(-angle));
        m_vTwiddles[static_cast<std::size_t>(at) + 1] = -static_cast<float>(std::cos(angle));
    }
    m_vWindow.resize(length);
    for (std::int32_t k = 0; k < frameLength; ++k) {
        m_vWindow[static_cast<std::size_t>(k)] =
            static_cast<float>(kHammingOffset - kHammingSwing * std::cos(kTwoPi * k / frameLength));
    }
    m_vWork.resize(length);
    m_vLaneWork.resize(length);
}

void CPfSpecEngBuilder::EndFFT() {
    m_vBitReversal.clear();
    m_vTwiddles.clear();
    m_vWindow.clear();
    m_vWork.clear();
    m_vLaneWork.clear();
}

void CPfSpecEngBuilder::RealFFT(float* data, std::uint16_t frameLength) const {
    if (frameLength == 0 || frameLength != m_vWork.size()) {
        return;
    }
    RunStages(data);
    SplitSpectrum(data);
    data[0] += data[1];
    data[1] = 0.0f;
}

void CPfSpecEngBuilder::RunStages(float* data) const {
    std::size_t const points = m_vBitReversal.size();
    for (std::size_t span = points / 2; span > 0; span /= 2) {
        float const* twiddle = m_vTwiddles.data();
        for (std::size_t group = 0; group < points; group += 2 * span) {
            float const c = twiddle[0];
            float const d = twiddle[1];
            float* a = data + 2 * group;
            float* b = a + 2 * span;
            for (std::size_t i = 0; i < span; ++i, a += 2, b += 2) {
                float const t1 = d * b[0] + c * b[1];
                float const t2 = c * b[0] - d * b[1];
                b[0] = (a[0] + t1) * kHalf;
                a[0] = b[0] - t1;
                b[1] = (a[1] - t2) * kHalf;
                a[1] = t2 + b[1];
            }
            twiddle += 2;
        }
    }
}

void CPfSpecEngBuilder::SplitSpectrum(float* data) const {
    for (std::size_t i = 1, j = m_vBitReversal.size() - 1; j >= i; ++i, --j) {
        auto const at = static_cast<std::size_t>(m_vBitReversal[i]);
        float* const a = data + at;
        float* const b = data + m_vBitReversal[j];
        float const c = m_vTwiddles[at];
        float const d = m_vTwiddles[at + 1];
        float const rm = a[0] - b[0];
        float const im = a[1] - b[1];
        float const rp = rm + 2.0f * b[0];
        float const ip = im + 2.0f * b[1];
        float const q1 = c * rm - d * ip;
        float const q2 = d * rm + c * ip;
        // In the middle a and b are the same pair: each assignment reads what the last one wrote.
        a[0] = (rp + q1) * kHalf;
        b[0] = a[0] - q1;
        a[1] = (im + q2) * kHalf;
        b[1] = a[1] - im;
    }
}

void CPfSpecEngBuilder::DoFFTToMagnitude(float const* frame, std::uint16_t frameLength,
                                         float* magnitudes) {
    if (frameLength == 0 || frameLength != m_vWork.size()) {
        return;
    }
    for (std::size_t k = 0; k < m_vWork.size(); ++k) {
        m_vWork[k] = frame[k] * m_vWindow[k];
    }
    RealFFT(m_vWork.data(), frameLength);
    for (std::size_t k = 0; k < m_vBitReversal.size(); ++k) {
        float const* const pair = m_vWork.data() + m_vBitReversal[k];
        magnitudes[k] = std::sqrt(pair[0] * pair[0] + pair[1] * pair[1]);
    }
}

float CPfSpecEngBuilder::GetSpecEnergy(float const* frame) {
    DoFFTToMagnitude(frame, m_nFrameLength, m_vMagnitudes.data());
    float sum = 0.0f;
    for (std::size_t k = 1; k < m_vBitReversal.size(); ++k) {
        sum += m_vMagnitudes[k];
    }
    return sum;
}

void CPfSpecEngBuilder::GetSpecEnergies(float const* frames, std::size_t count, float* energies) {
    std::size_t done = 0;
    if (!m_vWork.empty()) {
        CPfSpecEngTables const tables{m_vWork.size(), m_vBitReversal.data(), m_vTwiddles.data(),
                                      m_vWindow.data()};
        done = SpecEnergyLanes(tables, frames, count, m_vLaneWork.front().m_fLanes, energies);
    }
    for (; done < count; ++done) {
        energies[done] = GetSpecEnergy(frames + done * m_nFrameLength);
    }
}

std::int32_t CPfSpecEngBuilder::GetBinIndex(std::int32_t k) const {
    return m_vBitReversal[static_cast<std::size_t>(k)];
}
