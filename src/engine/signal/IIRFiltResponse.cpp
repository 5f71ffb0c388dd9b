// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Magnitude response of a design: each section at a point of the unit circle, their product in dB.

#include "engine/signal/IIRFilt.h"

#include <cmath>
#include <numbers>

CIIRComplex complex_exp(CIIRComplex z) {
    float const magnitude = std::exp(z.m_fRe);
    return {magnitude * std::cos(z.m_fIm), magnitude * std::sin(z.m_fIm)};
}

CIIRComplex complex_div(CIIRComplex a, CIIRComplex b) {
    float const norm = b.m_fRe * b.m_fRe + b.m_fIm * b.m_fIm;
    return {(a.m_fRe * b.m_fRe + a.m_fIm * b.m_fIm) / norm,
            (a.m_fIm * b.m_fRe - a.m_fRe * b.m_fIm) / norm};
}

CIIRComplex complex_mpy(CIIRComplex a, CIIRComplex b) {
    return {a.m_fRe * b.m_fRe - a.m_fIm * b.m_fIm, a.m_fRe * b.m_fIm + a.m_fIm * b.m_fRe};
}

CIIRComplex CIIRFilt::spgain(float normalisedFrequency, float const* b, float const* a) {
    float const angle = -2.0f * std::numbers::pi_v<float> * normalisedFrequency;
    CIIRComplex const z1 = complex_exp({0.0f, angle});
    CIIRComplex const z2 = complex_mpy(z1, z1);
    CIIRComplex const num = {b[0] + b[1] * z1.m_fRe + b[2] * z2.m_fRe,
                             b[1] * z1.m_fIm + b[2] * z2.m_fIm};
    CIIRComplex const den = {1.0f + a[0] * z1.m_fRe + a[1] * z2.m_fRe,
                             a[0] * z1.m_fIm + a[1] * z2.m_fIm};
    return complex_div(num, den);
}

float CIIRFilt::response(float frequencyHz) const {
    float const normalised = static_cast<float>(static_cast<double>(frequencyHz) * m_dSamplePeriod);
    CIIRComplex product{m_fOverallGain, 0.0f};
    for (std::int32_t i = 0; i < m_nSections; ++i) {
        product = complex_mpy(product, spgain(normalised, GetNumerator(i), GetDenominator(i)));
    }
    return 10.0f * std::log10(product.m_fRe * product.m_fRe + product.m_fIm * product.m_fIm);
}

float CIIRFilt::mean(float const* x, std::int32_t n) {
    float sum = 0.0f;
    for (std::int32_t i = 0; i < n; ++i) {
        sum += x[i];
    }
    return sum / static_cast<float>(n);
}
