// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// SpecEnergyLanes
//   LoadFrames      window, and turn eight frames into columns: work[8 * k + lane]
//   RunStages       the butterflies of SpecEngBuilder.cpp on eight frames at once
//   SplitSpectrum   likewise; the magnitude of a bin takes the place of its real part
//   SumMagnitudes   in ascending order within each lane

#include "engine/signal/SpecEngLanes.h"

#if defined(__x86_64__)

#include <immintrin.h>

#define TACTUS_AVX2 __attribute__((target("avx2")))

namespace {

TACTUS_AVX2 void LoadColumns(CPfSpecEngTables const& tables, float const* frames, std::size_t k,
                             float* work) {
    __m256 const window = _mm256_loadu_ps(tables.m_pWindow + k);
    __m256 rows[kSpecEngLanes];
    for (std::size_t lane = 0; lane < kSpecEngLanes; ++lane) {
        rows[lane] =
            _mm256_mul_ps(_mm256_loadu_ps(frames + lane * tables.m_nFrameLength + k), window);
    }
    // Transposes 8 x 8 in three rounds: pairs, quarters, halves of a register.
    __m256 pairs[kSpecEngLanes];
    for (std::size_t i = 0; i < kSpecEngLanes; i += 2) {
        pairs[i] = _mm256_unpacklo_ps(rows[i], rows[i + 1]);
        pairs[i + 1] = _mm256_unpackhi_ps(rows[i], rows[i + 1]);
    }
    __m256 quads[kSpecEngLanes];
    for (std::size_t i = 0; i < kSpecEngLanes; i += 4) {
        quads[i] = _mm256_shuffle_ps(pairs[i], pairs[i + 2], _MM_SHUFFLE(1, 0, 1, 0));
        quads[i + 1] = _mm256_shuffle_ps(pairs[i], pairs[i + 2], _MM_SHUFFLE(3, 2, 3, 2));
        quads[i + 2] = _mm256_shuffle_ps(pairs[i + 1], pairs[i + 3], _MM_SHUFFLE(1, 0, 1, 0));
        quads[i + 3] = _mm256_shuffle_ps(pairs[i + 1], pairs[i + 3], _MM_SHUFFLE(3, 2, 3, 2));
    }
    float* const column = work + k * kSpecEngLanes;
    for (std::size_t i = 0; i < 4; ++i) {
        _mm256_store_ps(column + i * kSpecEngLanes,
                        _mm256_permute2f128_ps(quads[i], quads[i + 4], 0x20));
        _mm256_store_ps(column + (i + 4) * kSpecEngLanes,
                        _mm256_permute2f128_ps(quads[i], quads[i + 4], 0x31));
    }
}

TACTUS_AVX2 void RunStages(CPfSpecEngTables const& tables, float* work) {
    constexpr std::size_t kPoint = 2 * kSpecEngLanes; // one complex point of every lane
    __m256 const half = _mm256_set1_ps(0.5f);
    std::size_t const points = tables.m_nFrameLength / 2;
    for (std::size_t span = points / 2; span > 0; span /= 2) {
        float const* twiddle = tables.m_pTwiddles;
        for (std::size_t group = 0; group < points; group += 2 * span, twiddle += 2) {
            __m256 const c = _mm256_set1_ps(twiddle[0]);
            __m256 const d = _mm256_set1_ps(twiddle[1]);
            float* a = work + group * kPoint;
            float* b = a + span * kPoint;
            for (std::size_t i = 0; i < span; ++i, a += kPoint, b += kPoint) {
                __m256 const ar = _mm256_load_ps(a);
                __m256 const ai = _mm256_load_ps(a + kSpecEngLanes);
                __m256 const br = _mm256_load_ps(b);
                __m256 const bi = _mm256_load_ps(b + kSpecEngLanes);
                __m256 const t1 = _mm256_add_ps(_mm256_mul_ps(d, br), _mm256_mul_ps(c, bi));
                __m256 const t2 = _mm256_sub_ps(_mm256_mul_ps(c, br), _mm256_mul_ps(d, bi));
                __m256 const newBr = _mm256_mul_ps(_mm256_add_ps(ar, t1), half);
                __m256 const newBi = _mm256_mul_ps(_mm256_sub_ps(ai, t2), half);
                _mm256_store_ps(b, newBr);
                _mm256_store_ps(b + kSpecEngLanes, newBi);
                _mm256_store_ps(a, _mm256_sub_ps(newBr, t1));
                _mm256_store_ps(a + kSpecEngLanes, _mm256_add_ps(t2, newBi));
            }
        }
    }
}

TACTUS_AVX2 __m256 Magnitude(__m256 re, __m256 im) {
    return _mm256_sqrt_ps(_mm256_add_ps(_mm256_mul_ps(re, re), _mm256_mul_ps(im, im)));
}

TACTUS_AVX2 void SplitSpectrum(CPfSpecEngTables const& tables, float* work) {
    __m256 const half = _mm256_set1_ps(0.5f);
    __m256 const two = _mm256_set1_ps(2.0f);
    for (std::size_t i = 1, j = tables.m_nFrameLength / 2 - 1; j >= i; ++i, --j) {
        auto const at = static_cast<std::size_t>(tables.m_pBitReversal[i]);
        float* const a = work + at * kSpecEngLanes;
        float* const b = work + static_cast<std::size_t>(tables.m_pBitReversal[j]) * kSpecEngLanes;
        __m256 const c = _mm256_set1_ps(tables.m_pTwiddles[at]);
        __m256 const d = _mm256_set1_ps(tables.m_pTwiddles[at + 1]);
        __m256 const br = _mm256_load_ps(b);
        __m256 const bi = _mm256_load_ps(b + kSpecEngLanes);
        __m256 const rm = _mm256_sub_ps(_mm256_load_ps(a), br);
        __m256 const im = _mm256_sub_ps(_mm256_load_ps(a + kSpecEngLanes), bi);
        __m256 const rp = _mm256_add_ps(rm, _mm256_mul_ps(two, br));
        __m256 const ip = _mm256_add_ps(im, _mm256_mul_ps(two, bi));
        __m256 const q1 = _mm256_sub_ps(_mm256_mul_ps(c, rm), _mm256_mul_ps(d, ip));
        __m256 const q2 = _mm256_add_ps(_mm256_mul_ps(d, rm), _mm256_mul_ps(c, ip));
        __m256 const newAr = _mm256_mul_ps(_mm256_add_ps(rp, q1), half);
        __m256 const newAi = _mm256_mul_ps(_mm256_add_ps(im, q2), half);
        _mm256_store_ps(a, Magnitude(newAr, newAi));
        // In the middle a and b are the same pair, and what b gets is what stays.
        _mm256_store_ps(b, Magnitude(_mm256_sub_ps(newAr, q1), _mm256_sub_ps(newAi, im)));
    }
}

TACTUS_AVX2 void SumMagnitudes(CPfSpecEngTables const& tables, float const* work, float* energies) {
    __m256 sum = _mm256_setzero_ps();
    for (std::size_t k = 1; k < tables.m_nFrameLength / 2; ++k) {
        auto const at = static_cast<std::size_t>(tables.m_pBitReversal[k]);
        sum = _mm256_add_ps(sum, _mm256_load_ps(work + at * kSpecEngLanes));
    }
    _mm256_storeu_ps(energies, sum);
}

} // namespace

TACTUS_AVX2 void SpecEnergyLanes(CPfSpecEngTables const& tables, float const* frames, float* work,
                                 float* energies) {
    for (std::size_t k = 0; k < tables.m_nFrameLength; k += kSpecEngLanes) {
        LoadColumns(tables, frames, k, work);
    }
    RunStages(tables, work);
    SplitSpectrum(tables, work);
    SumMagnitudes(tables, work, energies);
}

#endif
