// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// SpecEnergyLanes
//   LoadFrames      window, and turn frames into columns: work[kLanes * k + lane]
//   RunStages       the butterflies of SpecEngBuilder.cpp on all lanes at once, two stages in one
//                   pass over the work buffer
//   SplitSpectrum   likewise; the magnitude of a bin takes the place of its real part
//   SumMagnitudes   in ascending order within each lane

#include "engine/signal/SpecEngLanes.h"

#include "engine/kernels/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/signal/SpecEngLanes.cpp"
#include <hwy/foreach_target.h>

#include "engine/kernels/Lanes.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

constexpr CLaneTag kTag;

HWY_INLINE void LoadFrames(CPfSpecEngTables const& tables, float const* frames, float* work) {
    float const* lanes[kLanes];
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        lanes[lane] = frames + lane * tables.m_nFrameLength;
    }
    for (std::size_t k = 0; k < tables.m_nFrameLength; k += kBlock) {
        CLanes rows[kBlock];
        CLanes const window = hn::LoadDup128(kTag, tables.m_pWindow + k);
        LoadRows(lanes, static_cast<std::ptrdiff_t>(k), rows);
        for (CLanes& row : rows) {
            row = row * window;
        }
        TurnRows(rows);
        for (std::size_t i = 0; i < kBlock; ++i) {
            hn::Store(rows[i], kTag, work + (k + i) * kLanes);
        }
    }
}

/// A complex point of every lane.
struct CPoint {
    CLanes m_re, m_im;

    static constexpr std::size_t kFloats = 2 * kLanes;

    HWY_INLINE static CPoint Load(float const* at) {
        return {hn::Load(kTag, at), hn::Load(kTag, at + kLanes)};
    }

    HWY_INLINE void Store(float* at) const {
        hn::Store(m_re, kTag, at);
        hn::Store(m_im, kTag, at + kLanes);
    }
};

/// A twiddle factor and the butterfly that it turns.
struct CTwiddle {
    CLanes m_c, m_d;

    HWY_INLINE explicit CTwiddle(float const* pair)
        : m_c(hn::Set(kTag, pair[0])), m_d(hn::Set(kTag, pair[1])) {}

    HWY_INLINE void Turn(CPoint& a, CPoint& b) const {
        CLanes const half = hn::Set(kTag, 0.5f);
        CLanes const t1 = m_d * b.m_re + m_c * b.m_im;
        CLanes const t2 = m_c * b.m_re - m_d * b.m_im;
        b.m_re = (a.m_re + t1) * half;
        b.m_im = (a.m_im - t2) * half;
        a.m_re = b.m_re - t1;
        a.m_im = t2 + b.m_im;
    }
};

/// The stage of `span` and the one of half of it, for groups of four points at a time.
HWY_INLINE void RunTwoStages(CPfSpecEngTables const& tables, float* work, std::size_t span) {
    std::size_t const groups = tables.m_nFrameLength / 4 / span;
    std::size_t const apart = span / 2 * CPoint::kFloats;
    for (std::size_t group = 0; group < groups; ++group) {
        CTwiddle const whole(tables.m_pTwiddles + 2 * group);
        CTwiddle const low(tables.m_pTwiddles + 4 * group);
        CTwiddle const high(tables.m_pTwiddles + 4 * group + 2);
        float* at = work + 4 * group * apart;
        for (std::size_t i = 0; i < span / 2; ++i, at += CPoint::kFloats) {
            CPoint p0 = CPoint::Load(at);
            CPoint p1 = CPoint::Load(at + apart);
            CPoint p2 = CPoint::Load(at + 2 * apart);
            CPoint p3 = CPoint::Load(at + 3 * apart);
            whole.Turn(p0, p2);
            whole.Turn(p1, p3);
            low.Turn(p0, p1);
            high.Turn(p2, p3);
            p0.Store(at);
            p1.Store(at + apart);
            p2.Store(at + 2 * apart);
            p3.Store(at + 3 * apart);
        }
    }
}

HWY_INLINE void RunStages(CPfSpecEngTables const& tables, float* work) {
    std::size_t const points = tables.m_nFrameLength / 2;
    std::size_t span = points / 2;
    for (; span > 1; span /= 4) {
        RunTwoStages(tables, work, span);
    }
    if (span == 1) {
        for (std::size_t i = 0; i < points; i += 2) {
            float* const at = work + i * CPoint::kFloats;
            CPoint a = CPoint::Load(at);
            CPoint b = CPoint::Load(at + CPoint::kFloats);
            CTwiddle(tables.m_pTwiddles + i).Turn(a, b);
            a.Store(at);
            b.Store(at + CPoint::kFloats);
        }
    }
}

HWY_INLINE CLanes Magnitude(CLanes re, CLanes im) {
    return hn::Sqrt(re * re + im * im);
}

HWY_INLINE void SplitSpectrum(CPfSpecEngTables const& tables, float* work) {
    CLanes const half = hn::Set(kTag, 0.5f);
    CLanes const two = hn::Set(kTag, 2.0f);
    for (std::size_t i = 1, j = tables.m_nFrameLength / 2 - 1; j >= i; ++i, --j) {
        auto const at = static_cast<std::size_t>(tables.m_pBitReversal[i]);
        float* const a = work + at * kLanes;
        float* const b = work + static_cast<std::size_t>(tables.m_pBitReversal[j]) * kLanes;
        CLanes const c = hn::Set(kTag, tables.m_pTwiddles[at]);
        CLanes const d = hn::Set(kTag, tables.m_pTwiddles[at + 1]);
        CLanes const br = hn::Load(kTag, b);
        CLanes const bi = hn::Load(kTag, b + kLanes);
        CLanes const rm = hn::Load(kTag, a) - br;
        CLanes const im = hn::Load(kTag, a + kLanes) - bi;
        CLanes const rp = rm + two * br;
        CLanes const ip = im + two * bi;
        CLanes const q1 = c * rm - d * ip;
        CLanes const q2 = d * rm + c * ip;
        CLanes const newAr = (rp + q1) * half;
        CLanes const newAi = (im + q2) * half;
        hn::Store(Magnitude(newAr, newAi), kTag, a);
        // In the middle a and b are the same pair, and what b gets is what stays.
        hn::Store(Magnitude(newAr - q1, newAi - im), kTag, b);
    }
}

HWY_INLINE void SumMagnitudes(CPfSpecEngTables const& tables, float const* work, float* energies) {
    CLanes sum = hn::Zero(kTag);
    for (std::size_t k = 1; k < tables.m_nFrameLength / 2; ++k) {
        auto const at = static_cast<std::size_t>(tables.m_pBitReversal[k]);
        sum = sum + hn::Load(kTag, work + at * kLanes);
    }
    hn::StoreU(sum, kTag, energies);
}

std::size_t EnergyLanes(CPfSpecEngTables const& tables, float const* frames, std::size_t count,
                        float* work, float* energies) {
    std::size_t done = 0;
    for (; count - done >= kLanes; done += kLanes) {
        LoadFrames(tables, frames + done * tables.m_nFrameLength, work);
        RunStages(tables, work);
        SplitSpectrum(tables, work);
        SumMagnitudes(tables, work, energies + done);
    }
    return done;
}

#else

std::size_t EnergyLanes(CPfSpecEngTables const& /*tables*/, float const* /*frames*/,
                        std::size_t /*count*/, float* /*work*/, float* /*energies*/) {
    return 0;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(EnergyLanes);

std::size_t SpecEnergyLanes(CPfSpecEngTables const& tables, float const* frames, std::size_t count,
                            float* work, float* energies) {
    return HWY_DYNAMIC_DISPATCH(EnergyLanes)(tables, frames, count, work, energies);
}

#endif
