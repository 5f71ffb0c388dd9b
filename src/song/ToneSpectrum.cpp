// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Take
//   Halve       to half the rate as the samples come, behind a binomial filter
// Analyze
//   Decimate    twice more
//   Transform   window, then the even samples as real and the odd ones as imaginary parts of half
//               as many complex numbers; Stockham's order, radix 4, a last step of radix 2
//   Untangle    the spectrum of the real frame out of that of the complex one

#include "song/ToneSpectrum.h"

#include "song/PlainMath.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kComplex = kToneFrame / 2;

/// Cosines and sines of k turns over `kToneFrame`, and the Hann window, k from 0 on.
struct CTables {
    std::array<float, kToneFrame> m_cosine;
    std::array<float, kToneFrame> m_sine;
    std::array<float, kToneFrame> m_window;

    CTables() {
        for (std::size_t k = 0; k < kToneFrame; ++k) {
            double const turns = static_cast<double>(k) / static_cast<double>(kToneFrame);
            m_cosine[k] = static_cast<float>(PlainCosTurns(turns));
            m_sine[k] = static_cast<float>(PlainCosTurns(turns - 0.25));
            m_window[k] = static_cast<float>(0.5 - 0.5 * PlainCosTurns(turns));
        }
    }
};

CTables const& Tables() {
    static CTables const tables;
    return tables;
}

/// `count` values at half the rate, behind a binomial filter of 3, 5 or 7 taps. Without the promise
/// that the arrays lie apart the compiler does one value at a time.
void HalveByThree(float const* __restrict x, std::size_t count, float* __restrict out) {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = (x[2 * i] + x[2 * i + 2]) + 2.0f * x[2 * i + 1];
    }
}

void HalveByFive(float const* __restrict x, std::size_t count, float* __restrict out) {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] =
            (x[2 * i] + x[2 * i + 4]) + 4.0f * (x[2 * i + 1] + x[2 * i + 3]) + 6.0f * x[2 * i + 2];
    }
}

void HalveBySeven(float const* __restrict x, std::size_t count, float* __restrict out) {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = (x[2 * i] + x[2 * i + 6]) + 6.0f * (x[2 * i + 1] + x[2 * i + 5]) +
                 15.0f * (x[2 * i + 2] + x[2 * i + 4]) + 20.0f * x[2 * i + 3];
    }
}

/// One step of radix 4: `Length` numbers in runs of `Stride`.
template <std::size_t Length, std::size_t Stride>
void StepOfFour(float const* __restrict re, float const* __restrict im, float* __restrict toRe,
                float* __restrict toIm) {
    CTables const& tables = Tables();
    constexpr std::size_t kQuarter = Length / 4;
    for (std::size_t p = 0; p < kQuarter; ++p) {
        // A turn is 2 * kComplex entries of the table.
        std::size_t const turn = 2 * Stride * p;
        float const c1 = tables.m_cosine[turn];
        float const s1 = -tables.m_sine[turn];
        float const c2 = tables.m_cosine[2 * turn];
        float const s2 = -tables.m_sine[2 * turn];
        float const c3 = tables.m_cosine[3 * turn];
        float const s3 = -tables.m_sine[3 * turn];
        for (std::size_t q = 0; q < Stride; ++q) {
            std::size_t const a = q + Stride * p;
            std::size_t const b = a + Stride * kQuarter;
            std::size_t const c = b + Stride * kQuarter;
            std::size_t const d = c + Stride * kQuarter;
            float const sumRe = re[a] + re[c];
            float const sumIm = im[a] + im[c];
            float const offRe = re[a] - re[c];
            float const offIm = im[a] - im[c];
            float const otherRe = re[b] + re[d];
            float const otherIm = im[b] + im[d];
            float const crossRe = im[b] - im[d]; // -i (b - d)
            float const crossIm = re[d] - re[b];
            std::size_t const to = q + Stride * 4 * p;
            toRe[to] = sumRe + otherRe;
            toIm[to] = sumIm + otherIm;
            float const x1 = offRe + crossRe;
            float const y1 = offIm + crossIm;
            toRe[to + Stride] = x1 * c1 - y1 * s1;
            toIm[to + Stride] = x1 * s1 + y1 * c1;
            float const x2 = sumRe - otherRe;
            float const y2 = sumIm - otherIm;
            toRe[to + 2 * Stride] = x2 * c2 - y2 * s2;
            toIm[to + 2 * Stride] = x2 * s2 + y2 * c2;
            float const x3 = offRe - crossRe;
            float const y3 = offIm - crossIm;
            toRe[to + 3 * Stride] = x3 * c3 - y3 * s3;
            toIm[to + 3 * Stride] = x3 * s3 + y3 * c3;
        }
    }
}

} // namespace

CToneSpectrum::CToneSpectrum()
    : m_vHalf(kToneFrameSamples / 2),
      m_vQuarter(kToneFrameSamples / 4),
      m_vTones(kToneFrame),
      m_vRe(kComplex),
      m_vIm(kComplex),
      m_vOtherRe(kComplex),
      m_vOtherIm(kComplex) {
}

std::size_t CToneSpectrum::Take(std::span<float const> samples) {
    std::size_t const taken = std::min(kToneFrameSamples - m_nTaken, samples.size());
    m_nTaken += taken;
    Halve(samples.first(taken));
    return taken;
}

void CToneSpectrum::Halve(std::span<float const> samples) {
    if (m_nWaiting > 0) {
        std::size_t const missing = 3 - m_nWaiting;
        if (samples.size() < missing) {
            for (float const sample : samples) {
                m_waiting[m_nWaiting++] = sample;
            }
            return;
        }
        std::array<float, 3> const joint = {
            m_waiting[0], m_nWaiting == 2 ? m_waiting[1] : samples[0], samples[missing - 1]};
        HalveByThree(joint.data(), 1, m_vHalf.data() + m_nHalf++);
        samples = samples.subspan(missing - 1); // a value's last sample is the next one's first
    }
    std::size_t const count = samples.size() > 2 ? (samples.size() - 1) / 2 : 0;
    HalveByThree(samples.data(), count, m_vHalf.data() + m_nHalf);
    m_nHalf += count;
    samples = samples.subspan(2 * count);
    m_nWaiting = samples.size();
    std::copy(samples.begin(), samples.end(), m_waiting.begin());
}

void CToneSpectrum::Analyze(CToneMagnitudes* magnitudes) {
    std::fill(m_vHalf.begin() + static_cast<std::ptrdiff_t>(m_nHalf), m_vHalf.end(), 0.0f);
    m_nTaken = 0;
    m_nWaiting = 0;
    m_nHalf = 0;
    Decimate();
    Transform();
    Untangle(magnitudes);
}

void CToneSpectrum::Decimate() {
    // The window is 0 where the filters would reach beyond the frame: what is there stays 0.
    HalveByFive(m_vHalf.data(), m_vQuarter.size() - 2, m_vQuarter.data());
    HalveBySeven(m_vQuarter.data(), m_vTones.size() - 4, m_vTones.data());
}

void CToneSpectrum::Transform() {
    CTables const& tables = Tables();
    for (std::size_t i = 0; i < kComplex; ++i) {
        m_vRe[i] = m_vTones[2 * i] * tables.m_window[2 * i];
        m_vIm[i] = m_vTones[2 * i + 1] * tables.m_window[2 * i + 1];
    }
    float* const re = m_vRe.data();
    float* const im = m_vIm.data();
    float* const otherRe = m_vOtherRe.data();
    float* const otherIm = m_vOtherIm.data();
    static_assert(kComplex == 2048);
    StepOfFour<2048, 1>(re, im, otherRe, otherIm);
    StepOfFour<512, 4>(otherRe, otherIm, re, im);
    StepOfFour<128, 16>(re, im, otherRe, otherIm);
    StepOfFour<32, 64>(otherRe, otherIm, re, im);
    StepOfFour<8, 256>(re, im, otherRe, otherIm);
    for (std::size_t i = 0; i < kComplex / 2; ++i) {
        re[i] = otherRe[i] + otherRe[i + kComplex / 2];
        im[i] = otherIm[i] + otherIm[i + kComplex / 2];
        re[i + kComplex / 2] = otherRe[i] - otherRe[i + kComplex / 2];
        im[i + kComplex / 2] = otherIm[i] - otherIm[i + kComplex / 2];
    }
}

void CToneSpectrum::Untangle(CToneMagnitudes* magnitudes) const {
    CTables const& tables = Tables();
    (*magnitudes)[0] = 0.0f;
    for (std::size_t k = 1; k < kToneBins; ++k) {
        std::size_t const mirror = kComplex - k;
        float const evenRe = m_vRe[k] + m_vRe[mirror];
        float const evenIm = m_vIm[k] - m_vIm[mirror];
        float const oddRe = m_vIm[k] + m_vIm[mirror];
        float const oddIm = m_vRe[mirror] - m_vRe[k];
        float const re = evenRe + (oddRe * tables.m_cosine[k] + oddIm * tables.m_sine[k]);
        float const im = evenIm + (oddIm * tables.m_cosine[k] - oddRe * tables.m_sine[k]);
        (*magnitudes)[k] = std::sqrt(re * re + im * im);
    }
}
