// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct CIIRSection;

/// Single-precision complex number of the filter's analysis operations.
struct CIIRComplex {
    float m_fRe = 0.0f;
    float m_fIm = 0.0f;
};

/// e^z.
[[nodiscard]] CIIRComplex complex_exp(CIIRComplex z);

/// a / b; infinities or NaN when b is 0.
[[nodiscard]] CIIRComplex complex_div(CIIRComplex a, CIIRComplex b);

/// a * b.
[[nodiscard]] CIIRComplex complex_mpy(CIIRComplex a, CIIRComplex b);

/// Cascade of second-order IIR sections. Each section is a prototype in the s-plane (a type, a
/// frequency in Hz, a damping value and for the equaliser types a gain in dB) that the bilinear
/// transform maps to the z-plane with its frequency prewarped.
///
/// Use: `Init`, `SetSectionCount`, `SetSection` for each, `setfilt`, then any number of blocks. The
/// state of each of the four channels lives on between blocks.
/// Thread: one thread at a time.
class CIIRFilt {
public:
    static constexpr int kMaxSections = 32; // Fixed: what `Init` makes room for.
    static constexpr int kMaxChannels = 4;  // Fixed: channels that have a state of their own.

    /// Numerators over (s^0, s^1, s^2), with w the prewarped frequency, q the damping; the
    /// denominator is (w^2, w q, 1) unless noted. Any other number means a low-pass.
    enum Type : std::int32_t {
        kLowPass = 0,  // (w^2, 0, 0)
        kHighPass = 1, // (0, 0, 1)
        kBandPass = 2, // (0, w q, 0)
        kBandStop = 3, // (w^2, 0, 1)
        kSpecial4 = 4, // (w^2, w q, 1) over (w^2 q / 2, w q, q / 2)
        kSpecial5 = 5, // (w^2, w q, -1)
        kSpecial6 = 6, // (w^2, 0, -0.1)
        kSpecial7 = 7, // (-0.1 w^2, 0, 1)
        kAllPass = 8,  // (w^2, -w q, 1)
        kPeaking = 9,  // gain g: the s^1 term scaled by 10^(|g|/20), below the line for cuts
        kFirstOrderLowPass = 10,  // (w^2, 0, 0) over (w^2, w, 0)
        kFirstOrderHighPass = 11, // (0, w, 0) over (w^2, w, 0)
        kShelving = 12            // low shelf of gain g
    };

    CIIRFilt() = default;

    /// Drops any earlier design and state and makes room for 32 sections; the section count is 32.
    /// Units: samples per second, above 0.
    void Init(std::int32_t sampleRate);

    /// Number of sections that `setfilt` designs and the filters run, held to [0, 32]; 0 before
    /// `Init`.
    void SetSectionCount(std::int32_t count);

    /// What section i shall be; takes effect with `setfilt`. Ignored outside [0, 32).
    /// Units: Hz, damping without unit, dB.
    void SetSection(std::int32_t i, std::int32_t type, float frequencyHz, float damping,
                    float gainDb = 0.0f);

    /// Designs every section. `IsDesigned` tells whether any could be mapped.
    void setfilt();

    /// Bilinear mapping of one section, s = (1 - z^-1) / (1 + z^-1), computed in double and rounded
    /// once.
    /// Shape: reads num[0, *order] and den[0, *order], coefficients of s^0 upwards, order 2 at
    /// most; writes b[0, 3) and a[0, 2), the z^0 denominator being 1. `*order` is lowered to the
    /// highest power with a coefficient other than 0. `scratch` isn't needed and may be null.
    /// Returns: in `*error` 0, or 1 when the section has no such form; b and a are then all 0.
    static void spbiln(float const* num, float const* den, std::int32_t* order, float* b, float* a,
                       float* scratch, std::int32_t* error);

    /// Filters x[0], x[stride], ... in place, `count` samples of one channel. Nothing happens for a
    /// channel outside [0, 4). `flt` is the same with a stride of 1.
    void fl(float* x, std::int32_t channel, std::int32_t count, std::int32_t stride);
    void flt(float* x, std::int32_t channel, std::int32_t count);

    /// The plain loop of `fl`, section by section over the whole block. Same bits.
    void flPlain(float* x, std::int32_t channel, std::int32_t count, std::int32_t stride);

    /// Filters x[0, count) in place with separate input and output histories; it shares the
    /// former's array with `fl`, so don't mix the two on one channel without `clearpasts`.
    void fspcflt(float* x, std::int32_t count, std::int32_t channel);

    /// Zeroes the state of every channel.
    void clearpasts();

    /// Magnitude of the designed cascade in dB, overall gain included.
    [[nodiscard]] float response(float frequencyHz) const;

    /// One z-plane section (b0, b1, b2 over 1, a1, a2) at e^(-2 pi j f), f in cycles per sample.
    [[nodiscard]] static CIIRComplex spgain(float normalisedFrequency, float const* b,
                                            float const* a);

    /// Single-precision sum of x[0, n) over n; NaN when n is 0.
    [[nodiscard]] static float mean(float const* x, std::int32_t n);

    [[nodiscard]] bool IsDesigned() const { return m_bDesigned; }

    /// What the last mapping reported; the filters clear it.
    [[nodiscard]] bool HasMappingError() const { return m_nMappingError != 0; }

    [[nodiscard]] std::int32_t GetSectionCount() const { return m_nSections; }

    /// Coefficients of section i: b0, b1, b2 and a1, a2. `Init` first; 0 <= i < 32.
    [[nodiscard]] float const* GetNumerator(std::int32_t i) const { return &m_vNumZ[At(i, 3)]; }
    [[nodiscard]] float const* GetDenominator(std::int32_t i) const { return &m_vDenZ[At(i, 2)]; }

private:
    static constexpr std::size_t At(std::int32_t section, std::size_t width) {
        return static_cast<std::size_t>(section) * width;
    }

    [[nodiscard]] float* State(std::int32_t channel);
    [[nodiscard]] bool CanFilter(std::int32_t channel, std::int32_t count) const;
    void BuildPrototype(std::int32_t i);
    [[nodiscard]] CIIRSection GetSection(std::int32_t i) const;

    bool m_bInitialised = false;
    bool m_bDesigned = false;
    std::vector<float> m_vDenZ;   // a1, a2 per section
    std::vector<float> m_vNumZ;   // b0, b1, b2 per section
    std::vector<float> m_vNumS;   // s^0, s^1, s^2 per section
    std::vector<float> m_vDenS;   // likewise
    std::vector<float> m_vState;  // w0, w1, w2 per section per channel
    std::vector<float> m_vOutput; // y1, y2 per section per channel, `fspcflt` only
    std::vector<float> m_vFrequency;
    std::vector<float> m_vDamping;
    std::vector<float> m_vGain;
    std::vector<std::int32_t> m_vType;
    std::int32_t m_nSections = 0;
    std::int32_t m_nOrder = 2;
    std::int32_t m_nMappingError = 0;
    float m_fOverallGain = 1.0f;
    double m_dSamplePeriod = 1.0; // seconds; `Init` sets it
};
