// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// SpecEnergyLanes
//   LoadFrames      window, and turn frames into columns: work[kLanes * k + lane]
//   RunStages       the butterflies of SpecEngBuilder.cpp on all lanes at once
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

HWY_INLINE void RunStages(CPfSpecEngTables const& tables, float* work) {
    constexpr std::size_t kPoint = 2 * kLanes; // one complex point of every lane
    CLanes const half = hn::Set(kTag, 0.5f);
    std::size_t const points = tables.m_nFrameLength / 2;
    for (std::size_t span = points / 2; span > 0; span /= 2) {
        float const* twiddle = tables.m_pTwiddles;
        for (std::size_t group = 0; group < points; group += 2 * span, twiddle += 2) {
            CLanes const c = hn::Set(kTag, twiddle[0]);
            CLanes const d = hn::Set(kTag, twiddle[1]);
            float* a = work + group * kPoint;
            float* b = a + span * kPoint;
            for (std::size_t i = 0; i < span; ++i, a += kPoint, b += kPoint) {
                CLanes const br = hn::Load(kTag, b);
                CLanes const bi = hn::Load(kTag, b + kLanes);
                CLanes const t1 = d * br + c * bi;
                CLanes const t2 = c * br - d * bi;
                CLanes const newBr = (hn::Load(kTag, a) + t1) * half;
                CLanes const newBi = (hn::Load(kTag, a + kLanes) - t2) * half;
                hn::Store(newBr, kTag, b);
                hn::Store(newBi, kTag, b + kLanes);
                hn::Store(newBr - t1, kTag, a);
                hn::Store(t2 + newBi, kTag, a + kLanes);
            }
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
