// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Three sections at once. What a section costs is the wait for its own multiplication and two
// additions; side by side the three wait together. FilterThree puts them into the lanes of a
// register, so that there is nothing to wait for but that.

#include "engine/signal/IIRSection.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

void FilterThreePlain(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    CIIRSection const first = sections[0];
    CIIRSection const second = sections[1];
    CIIRSection const third = sections[2];
    float u1 = state[1];
    float u2 = state[2];
    float v1 = state[4];
    float v2 = state[5];
    float w1 = state[7];
    float w2 = state[8];
    for (std::int32_t i = 0; i < count; ++i) {
        x[i] = third.Run(second.Run(first.Run(x[i], u1, u2), v1, v2), w1, w2);
    }
    state[0] = state[1] = u1;
    state[2] = u2;
    state[3] = state[4] = v1;
    state[5] = v2;
    state[6] = state[7] = w1;
    state[8] = w2;
}

#if defined(__SSE2__)

namespace {

constexpr std::int32_t kAhead = 4;          // Derived: samples the first section is ahead by.
constexpr std::int32_t kShortestBlock = 16; // Tuned: BM_BassFilter; shorter ones are all edges.

/// The sections in the lanes of a register, the second two samples behind the first and the third
/// two behind the second: what a section needs of the one before it was ready two steps ago.
class CThreeLanes {
public:
    CThreeLanes(CThreeSections const& sections, float const* state)
        : m_b0(Lanes(sections, &CIIRSection::m_fB0)),
          m_b1(Lanes(sections, &CIIRSection::m_fB1)),
          m_b2(Lanes(sections, &CIIRSection::m_fB2)),
          m_a1(Lanes(sections, &CIIRSection::m_fA1)),
          m_a2(Lanes(sections, &CIIRSection::m_fA2)),
          m_w1(_mm_setr_ps(state[1], state[4], state[7], 0.0f)),
          m_w2(_mm_setr_ps(state[2], state[5], state[8], 0.0f)) {}

    /// One step of every section, in the order of operations of `CIIRSection::Run`.
    __m128 Run(__m128 x) {
        __m128 const w0 = _mm_sub_ps(x, _mm_add_ps(_mm_mul_ps(m_a1, m_w1), _mm_mul_ps(m_a2, m_w2)));
        __m128 const y = _mm_add_ps(_mm_add_ps(_mm_mul_ps(m_b2, m_w2), _mm_mul_ps(m_b0, w0)),
                                    _mm_mul_ps(m_b1, m_w1));
        m_w2 = m_w1;
        m_w1 = w0;
        return y;
    }

    void StoreState(float* state) const {
        std::array<float, 4> w1;
        std::array<float, 4> w2;
        _mm_storeu_ps(w1.data(), m_w1);
        _mm_storeu_ps(w2.data(), m_w2);
        for (std::size_t i = 0; i < kThreeSections; ++i) {
            state[kIIRStates * i] = state[kIIRStates * i + 1] = w1[i];
            state[kIIRStates * i + 2] = w2[i];
        }
    }

private:
    static __m128 Lanes(CThreeSections const& sections, float CIIRSection::*value) {
        return _mm_setr_ps(sections[0].*value, sections[1].*value, sections[2].*value, 0.0f);
    }

    __m128 m_b0, m_b1, m_b2, m_a1, m_a2;
    __m128 m_w1, m_w2;
};

/// The outputs, each moved to the section behind, with a new sample for the first.
__m128 NextInput(__m128 outputs, float const* sample) {
    __m128 const moved = _mm_castsi128_ps(_mm_slli_si128(_mm_castps_si128(outputs), 4));
    return _mm_move_ss(moved, _mm_load_ss(sample));
}

} // namespace

void FilterThree(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    if (count < kShortestBlock) {
        FilterThreePlain(sections, x, state, count);
        return;
    }
    FilterOne(sections[0], x, state, kAhead, 1);
    FilterOne(sections[1], x, state + kIIRStates, kAhead / 2, 1);
    CThreeLanes lanes(sections, state);
    __m128 before = _mm_setr_ps(x[2], x[0], 0.0f, 0.0f); // outputs of two steps ago
    __m128 last = _mm_setr_ps(x[3], x[1], 0.0f, 0.0f);   // outputs of one step ago
    for (std::int32_t i = kAhead; i < count; ++i) {
        __m128 const outputs = lanes.Run(NextInput(before, x + i));
        _mm_store_ss(x + i - kAhead, _mm_movehl_ps(outputs, outputs));
        before = last;
        last = outputs;
    }
    lanes.StoreState(state);
    // The last four samples have passed the first section, or the first two.
    float* const tail = x + count - kAhead;
    _mm_storel_pi(reinterpret_cast<__m64*>(tail), _mm_unpacklo_ps(_mm_shuffle_ps(before, before, 1),
                                                                  _mm_shuffle_ps(last, last, 1)));
    _mm_storel_pi(reinterpret_cast<__m64*>(tail + 2), _mm_unpacklo_ps(before, last));
    FilterOne(sections[1], tail + 2, state + kIIRStates, kAhead / 2, 1);
    FilterOne(sections[2], tail, state + 2 * kIIRStates, kAhead, 1);
}

#else

void FilterThree(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    FilterThreePlain(sections, x, state, count);
}

#endif
