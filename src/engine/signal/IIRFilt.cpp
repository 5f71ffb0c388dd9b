// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Design: prototype in the s-plane (BuildPrototype), bilinear mapping (spbiln).
// Run: direct form II (fl, flt) in IIRSection.h and IIRLanes.cpp, direct form I (fspcflt).
// Analysis of a design: IIRFiltResponse.cpp.

#include "engine/signal/IIRFilt.h"

#include "engine/signal/IIRSection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr std::size_t kCoefficientsS = 3; // Derived: order + 1.
constexpr std::size_t kOutputsPerSection = 2;

/// s-plane section in double, as it is before it is stored in single precision.
struct CPrototype {
    double m_dNum[kCoefficientsS];
    double m_dDen[kCoefficientsS];
};

CPrototype PeakingPrototype(double w, double q, double gainDb) {
    double const w2 = w * w;
    double const boost = std::pow(10.0, std::fabs(gainDb) / 20.0) * w * q;
    if (gainDb >= 0.0) {
        return {{w2, boost, 1.0}, {w2, w * q, 1.0}};
    }
    return {{w2, w * q, 1.0}, {w2, boost, 1.0}};
}

CPrototype ShelvingPrototype(double w, double q, double gainDb) {
    double const w2 = w * w;
    double const amplitude = std::pow(10.0, std::fabs(gainDb) / 40.0);
    double const middle = q / std::sqrt(amplitude) * w;
    if (gainDb >= 0.0) {
        return {{w2 / amplitude, middle, 1.0}, {w2, middle, 1.0 / amplitude}};
    }
    return {{w2, middle, 1.0 / amplitude}, {w2 / amplitude, middle, 1.0}};
}

CPrototype MakePrototype(std::int32_t type, double w, double q, double gainDb) {
    double const w2 = w * w;
    double const wq = w * q;
    switch (type) {
    case CIIRFilt::kHighPass:
        return {{0.0, 0.0, 1.0}, {w2, wq, 1.0}};
    case CIIRFilt::kBandPass:
        return {{0.0, wq, 0.0}, {w2, wq, 1.0}};
    case CIIRFilt::kBandStop:
        return {{w2, 0.0, 1.0}, {w2, wq, 1.0}};
    case CIIRFilt::kSpecial4:
        return {{w2, wq, 1.0}, {w2 * q * 0.5, wq, q * 0.5}};
    case CIIRFilt::kSpecial5:
        return {{w2, wq, -1.0}, {w2, wq, 1.0}};
    case CIIRFilt::kSpecial6:
        return {{w2, 0.0, -0.1}, {w2, wq, 1.0}};
    case CIIRFilt::kSpecial7:
        return {{-0.1 * w2, 0.0, 1.0}, {w2, wq, 1.0}};
    case CIIRFilt::kAllPass:
        return {{w2, -wq, 1.0}, {w2, wq, 1.0}};
    case CIIRFilt::kPeaking:
        return PeakingPrototype(w, q, gainDb);
    case CIIRFilt::kFirstOrderLowPass:
        return {{w2, 0.0, 0.0}, {w2, w, 0.0}};
    case CIIRFilt::kFirstOrderHighPass:
        return {{0.0, w, 0.0}, {w2, w, 0.0}};
    case CIIRFilt::kShelving:
        return ShelvingPrototype(w, q, gainDb);
    default:
        return {{w2, 0.0, 0.0}, {w2, wq, 1.0}};
    }
}

/// Coefficients over (z^0, z^-1, z^-2) of c0 + c1 s + c2 s^2, multiplied out with
/// (1 + z^-1)^order.
void ExpandInZ(float const* s, std::int32_t order, double* z) {
    double const c0 = static_cast<double>(s[0]);
    double const c1 = order >= 1 ? static_cast<double>(s[1]) : 0.0;
    double const c2 = order >= 2 ? static_cast<double>(s[2]) : 0.0;
    if (order >= 2) {
        z[0] = c0 + c1 + c2;
        z[1] = 2.0 * c0 - 2.0 * c2;
        z[2] = c0 - c1 + c2;
        return;
    }
    z[0] = c0 + c1;
    z[1] = order == 1 ? c0 - c1 : 0.0;
    z[2] = 0.0;
}

} // namespace

void CIIRFilt::Init(std::int32_t sampleRate) {
    std::size_t const sections = kMaxSections;
    std::size_t const channels = kMaxChannels;
    m_bDesigned = false;
    m_nOrder = 2;
    m_nSections = kMaxSections;
    m_dSamplePeriod = 1.0 / static_cast<double>(sampleRate);
    m_vDenZ.assign(2 * sections, 0.0f);
    m_vNumZ.assign(3 * sections, 0.0f);
    m_vNumS.assign(kCoefficientsS * sections, 0.0f);
    m_vDenS.assign(kCoefficientsS * sections, 0.0f);
    m_vState.assign(kIIRStates * sections * channels, 0.0f);
    m_vOutput.assign(kOutputsPerSection * sections * channels, 0.0f);
    m_vFrequency.assign(sections, 0.0f);
    m_vDamping.assign(sections, 0.0f);
    m_vGain.assign(sections, 0.0f);
    m_vType.assign(sections, kLowPass);
    m_nMappingError = 0;
    m_fOverallGain = 1.0f;
    m_bInitialised = true;
}

void CIIRFilt::SetSectionCount(std::int32_t count) {
    m_nSections = m_bInitialised ? std::clamp(count, 0, kMaxSections) : 0;
}

void CIIRFilt::SetSection(std::int32_t i, std::int32_t type, float frequencyHz, float damping,
                          float gainDb) {
    if (!m_bInitialised || i < 0 || i >= kMaxSections) {
        return;
    }
    m_vType[At(i, 1)] = type;
    m_vFrequency[At(i, 1)] = frequencyHz;
    m_vDamping[At(i, 1)] = damping;
    m_vGain[At(i, 1)] = gainDb;
}

void CIIRFilt::BuildPrototype(std::int32_t i) {
    // The factor 2 / T of the bilinear transform is left out here and in spbiln.
    double const w =
        std::tan(std::numbers::pi * static_cast<double>(m_vFrequency[At(i, 1)]) * m_dSamplePeriod);
    CPrototype const section =
        MakePrototype(m_vType[At(i, 1)], w, static_cast<double>(m_vDamping[At(i, 1)]),
                      static_cast<double>(m_vGain[At(i, 1)]));
    for (std::size_t k = 0; k < kCoefficientsS; ++k) {
        m_vNumS[At(i, kCoefficientsS) + k] = static_cast<float>(section.m_dNum[k]);
        m_vDenS[At(i, kCoefficientsS) + k] = static_cast<float>(section.m_dDen[k]);
    }
}

void CIIRFilt::setfilt() {
    for (std::int32_t i = 0; i < m_nSections; ++i) {
        BuildPrototype(i);
        std::int32_t order = m_nOrder;
        spbiln(&m_vNumS[At(i, kCoefficientsS)], &m_vDenS[At(i, kCoefficientsS)], &order,
               &m_vNumZ[At(i, 3)], &m_vDenZ[At(i, 2)], nullptr, &m_nMappingError);
        if (m_nMappingError == 0) {
            m_bDesigned = true;
        }
    }
}

void CIIRFilt::spbiln(float const* num, float const* den, std::int32_t* order, float* b, float* a,
                      float* /*scratch*/, std::int32_t* error) {
    *order = std::clamp(*order, 0, 2);
    while (*order > 0 && num[*order] == 0.0f && den[*order] == 0.0f) {
        --*order;
    }
    double numZ[3];
    double denZ[3];
    ExpandInZ(num, *order, numZ);
    ExpandInZ(den, *order, denZ);
    // A section without a z^0 term can't be normalised: its output would come before its input.
    double const scale = denZ[0];
    *error = scale != 0.0 && std::isfinite(scale) ? 0 : 1;
    for (int k = 0; k < 3; ++k) {
        b[k] = *error == 0 ? static_cast<float>(numZ[k] / scale) : 0.0f;
    }
    for (int k = 0; k < 2; ++k) {
        a[k] = *error == 0 ? static_cast<float>(denZ[k + 1] / scale) : 0.0f;
    }
}

float* CIIRFilt::State(std::int32_t channel) {
    return &m_vState[At(channel, kIIRStates * kMaxSections)];
}

bool CIIRFilt::CanFilter(std::int32_t channel, std::int32_t count) const {
    return m_bInitialised && m_nSections > 0 && channel >= 0 && channel < kMaxChannels && count > 0;
}

CIIRSection CIIRFilt::GetSection(std::int32_t i) const {
    float const* const b = GetNumerator(i);
    float const* const a = GetDenominator(i);
    return {b[0], b[1], b[2], a[0], a[1]};
}

void CIIRFilt::fl(float* x, std::int32_t channel, std::int32_t count, std::int32_t stride) {
    if (m_nSections != kThreeSections || stride != 1 || !CanFilter(channel, count)) {
        flPlain(x, channel, count, stride);
        return;
    }
    m_nMappingError = 0;
    CThreeSections const sections{GetSection(0), GetSection(1), GetSection(2)};
    FilterThree(sections, x, State(channel), count);
}

void CIIRFilt::flPlain(float* x, std::int32_t channel, std::int32_t count, std::int32_t stride) {
    m_nMappingError = 0;
    if (!CanFilter(channel, count)) {
        return;
    }
    float* state = State(channel);
    for (std::int32_t i = 0; i < m_nSections; ++i, state += kIIRStates) {
        FilterOne(GetSection(i), x, state, count, stride);
    }
}

void CIIRFilt::flt(float* x, std::int32_t channel, std::int32_t count) {
    m_nMappingError = 0;
    if (!CanFilter(channel, count)) {
        return;
    }
    float* const states = State(channel);
    for (std::int32_t k = 0; k < count; ++k) {
        for (std::int32_t i = 0; i < m_nSections; ++i) {
            FilterOne(GetSection(i), x + k, states + At(i, kIIRStates), 1, 1);
        }
    }
}

void CIIRFilt::fspcflt(float* x, std::int32_t count, std::int32_t channel) {
    m_nMappingError = 0;
    if (!CanFilter(channel, count)) {
        return;
    }
    float* const inputs = State(channel);
    float* const outputs = &m_vOutput[At(channel, kOutputsPerSection * kMaxSections)];
    for (std::int32_t k = 0; k < count; ++k) {
        float sample = x[k];
        for (std::int32_t i = 0; i < m_nSections; ++i) {
            float* const in = inputs + At(i, kIIRStates);
            float* const out = outputs + At(i, kOutputsPerSection);
            float const* const b = &m_vNumZ[At(i, 3)];
            float const* const a = &m_vDenZ[At(i, 2)];
            in[0] = sample;
            sample = in[0] * b[0] + (b[1] * in[1] - a[0] * out[0]) + (b[2] * in[2] - a[1] * out[1]);
            in[2] = in[1];
            in[1] = in[0];
            out[1] = out[0];
            out[0] = sample;
        }
        x[k] = sample;
    }
}

void CIIRFilt::clearpasts() {
    std::fill(m_vState.begin(), m_vState.end(), 0.0f);
    std::fill(m_vOutput.begin(), m_vOutput.end(), 0.0f);
}
