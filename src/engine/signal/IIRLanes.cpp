// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FilterLanes   fills whole registers: eight lanes with AVX2, four with SSE2, a single one goes
//               through the three sections that stand side by side in IIRFiltThree.cpp
//   CLanesOf8, CLanesOf4   four samples of every lane, turned into columns and back
// A lane that stays empty repeats the first one: it writes the same bits to the same place.

#include "engine/signal/IIRLanes.h"

#include "engine/signal/CpuFeatures.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#define TACTUS_AVX2 __attribute__((target("avx2")))
#endif

std::int32_t GetLaneCount() {
    return UseAvx2() ? kMostLanes : kMostLanes / 2;
}

void FilterLanePlain(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    auto& [u1, u2, v1, v2, w1, w2] = *lane.m_pState;
    for (std::int32_t i = 0; i < count; ++i) {
        float const first = section.Run(lane.m_pIn[i], u1, u2);
        lane.m_pOut[i] = section.Run(section.Run(first, v1, v2), w1, w2);
    }
}

namespace {

/// A single lane: the sections themselves stand side by side.
void FilterSingle(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    CThreeStates& s = *lane.m_pState;
    std::array<float, kIIRStates* kThreeSections> state = {s[0], s[0], s[1], s[2], s[2],
                                                           s[3], s[4], s[4], s[5]};
    std::copy_n(lane.m_pIn, count, lane.m_pOut);
    FilterThree({section, section, section}, lane.m_pOut, state.data(), count);
    s = {state[1], state[2], state[4], state[5], state[7], state[8]};
}

} // namespace

#if defined(__x86_64__)

namespace {

constexpr std::int32_t kStates = 6; // Derived: two of each section.

/// Where the lanes of one register stand and what they remember, by state and lane.
template <std::size_t kWidth>
struct CLaneTable {
    explicit CLaneTable(std::span<CIIRLane const> lanes) {
        for (std::size_t i = 0; i < kWidth; ++i) {
            CIIRLane const& lane = lanes[i < lanes.size() ? i : 0];
            m_pIn[i] = lane.m_pIn;
            m_pOut[i] = lane.m_pOut;
            for (std::size_t k = 0; k < kStates; ++k) {
                m_fStates[k][i] = (*lane.m_pState)[k];
            }
        }
    }

    void StoreStates(std::span<CIIRLane const> lanes) const {
        for (std::size_t i = 0; i < lanes.size(); ++i) {
            for (std::size_t k = 0; k < kStates; ++k) {
                (*lanes[i].m_pState)[k] = m_fStates[k][i];
            }
        }
    }

    std::array<float const*, kWidth> m_pIn;
    std::array<float*, kWidth> m_pOut;
    alignas(32) float m_fStates[kStates][kWidth];
};

/// The coefficients, each in all lanes, and one section's step in the order of `CIIRSection::Run`.
struct CStepOf8 {
    __m256 m_b0, m_b1, m_b2, m_a1, m_a2;

    TACTUS_AVX2 explicit CStepOf8(CIIRSection const& section)
        : m_b0(_mm256_set1_ps(section.m_fB0)),
          m_b1(_mm256_set1_ps(section.m_fB1)),
          m_b2(_mm256_set1_ps(section.m_fB2)),
          m_a1(_mm256_set1_ps(section.m_fA1)),
          m_a2(_mm256_set1_ps(section.m_fA2)) {}

    TACTUS_AVX2 inline __m256 Run(__m256 x, __m256& w1, __m256& w2) const {
        __m256 const w0 =
            _mm256_sub_ps(x, _mm256_add_ps(_mm256_mul_ps(m_a1, w1), _mm256_mul_ps(m_a2, w2)));
        __m256 const y =
            _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(m_b2, w2), _mm256_mul_ps(m_b0, w0)),
                          _mm256_mul_ps(m_b1, w1));
        w2 = w1;
        w1 = w0;
        return y;
    }
};

/// Four rows of two times four samples into four columns, or back: the turn is its own inverse.
TACTUS_AVX2 inline void TurnOf8(__m256* rows) {
    __m256 const low01 = _mm256_unpacklo_ps(rows[0], rows[1]);
    __m256 const high01 = _mm256_unpackhi_ps(rows[0], rows[1]);
    __m256 const low23 = _mm256_unpacklo_ps(rows[2], rows[3]);
    __m256 const high23 = _mm256_unpackhi_ps(rows[2], rows[3]);
    rows[0] = _mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(1, 0, 1, 0));
    rows[1] = _mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(3, 2, 3, 2));
    rows[2] = _mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(1, 0, 1, 0));
    rows[3] = _mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(3, 2, 3, 2));
}

TACTUS_AVX2 void FilterEight(CIIRSection const& section, std::span<CIIRLane const> lanes,
                             std::int32_t count) {
    CLaneTable<8> table(lanes);
    CStepOf8 const step(section);
    __m256 w[kStates];
    for (std::size_t k = 0; k < kStates; ++k) {
        w[k] = _mm256_load_ps(table.m_fStates[k]);
    }
    for (std::int32_t k = 0; k < count; k += kLaneMultiple) {
        __m256 rows[4];
        for (std::size_t i = 0; i < 4; ++i) {
            rows[i] = _mm256_loadu2_m128(table.m_pIn[i + 4] + k, table.m_pIn[i] + k);
        }
        TurnOf8(rows);
        for (__m256& column : rows) {
            column = step.Run(step.Run(step.Run(column, w[0], w[1]), w[2], w[3]), w[4], w[5]);
        }
        TurnOf8(rows);
        for (std::size_t i = 0; i < 4; ++i) {
            _mm256_storeu2_m128(table.m_pOut[i + 4] + k, table.m_pOut[i] + k, rows[i]);
        }
    }
    for (std::size_t k = 0; k < kStates; ++k) {
        _mm256_store_ps(table.m_fStates[k], w[k]);
    }
    table.StoreStates(lanes);
}

/// As `CStepOf8`, for four lanes.
struct CStepOf4 {
    __m128 m_b0, m_b1, m_b2, m_a1, m_a2;

    explicit CStepOf4(CIIRSection const& section)
        : m_b0(_mm_set1_ps(section.m_fB0)),
          m_b1(_mm_set1_ps(section.m_fB1)),
          m_b2(_mm_set1_ps(section.m_fB2)),
          m_a1(_mm_set1_ps(section.m_fA1)),
          m_a2(_mm_set1_ps(section.m_fA2)) {}

    __m128 Run(__m128 x, __m128& w1, __m128& w2) const {
        __m128 const w0 = _mm_sub_ps(x, _mm_add_ps(_mm_mul_ps(m_a1, w1), _mm_mul_ps(m_a2, w2)));
        __m128 const y = _mm_add_ps(_mm_add_ps(_mm_mul_ps(m_b2, w2), _mm_mul_ps(m_b0, w0)),
                                    _mm_mul_ps(m_b1, w1));
        w2 = w1;
        w1 = w0;
        return y;
    }
};

void FilterFour(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count) {
    CLaneTable<4> table(lanes);
    CStepOf4 const step(section);
    __m128 w[kStates];
    for (std::size_t k = 0; k < kStates; ++k) {
        w[k] = _mm_load_ps(table.m_fStates[k]);
    }
    for (std::int32_t k = 0; k < count; k += kLaneMultiple) {
        __m128 rows[4];
        for (std::size_t i = 0; i < 4; ++i) {
            rows[i] = _mm_loadu_ps(table.m_pIn[i] + k);
        }
        _MM_TRANSPOSE4_PS(rows[0], rows[1], rows[2], rows[3]);
        for (__m128& column : rows) {
            column = step.Run(step.Run(step.Run(column, w[0], w[1]), w[2], w[3]), w[4], w[5]);
        }
        _MM_TRANSPOSE4_PS(rows[0], rows[1], rows[2], rows[3]);
        for (std::size_t i = 0; i < 4; ++i) {
            _mm_storeu_ps(table.m_pOut[i] + k, rows[i]);
        }
    }
    for (std::size_t k = 0; k < kStates; ++k) {
        _mm_store_ps(table.m_fStates[k], w[k]);
    }
    table.StoreStates(lanes);
}

} // namespace

void FilterLanes(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count) {
    constexpr std::size_t kHalf = kMostLanes / 2;
    while (!lanes.empty()) {
        std::size_t taken = std::min(lanes.size(), kHalf);
        if (lanes.size() == 1) {
            FilterSingle(section, lanes.front(), count);
        } else if (lanes.size() > kHalf && UseAvx2()) {
            taken = lanes.size();
            FilterEight(section, lanes, count);
        } else {
            FilterFour(section, lanes.first(taken), count);
        }
        lanes = lanes.subspan(taken);
    }
}

#else

void FilterLanes(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count) {
    for (CIIRLane const& lane : lanes) {
        FilterSingle(section, lane, count);
    }
}

#endif
