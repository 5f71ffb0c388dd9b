// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FilterLanes   fills whole registers, one runner to a lane; a single one goes through ThreeLanes
//   FilterTogether   four samples of every lane, turned into columns and back; a lane that stays
//                    empty repeats the first one: it writes the same bits to the same place
//     RunBlock       each section four samples behind the one before it, so that the processor,
//                    which looks some hundred operations ahead, finds three that don't wait for
//                    each other
// FilterThree   ThreeLanes has the sections in the lanes of a register. What a section costs is the
//               wait for its own multiplication and two additions; side by side the three wait
//               together

#include "engine/signal/IIRLanes.h"

#include "engine/kernels/Targets.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/signal/IIRLanes.cpp"
#include <hwy/foreach_target.h>

#include "engine/kernels/Lanes.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

std::int32_t LaneCount() {
    return kLanes;
}

#if HWY_TARGET != HWY_SCALAR

/// Sections in lanes, and one step of each in the order of operations of `CIIRSection::Run`.
template <class V>
struct CStep {
    V m_b0, m_b1, m_b2, m_a1, m_a2;

    HWY_INLINE V Run(V x, V& w1, V& w2) const {
        V const w0 = x - (m_a1 * w1 + m_a2 * w2);
        V const y = m_b2 * w2 + m_b0 * w0 + m_b1 * w1;
        w2 = w1;
        w1 = w0;
        return y;
    }
};

using CFourTag = hn::FixedTag<float, 4>;
using CFour = hn::Vec<CFourTag>;
constexpr CFourTag kFour;
constexpr std::int32_t kAhead = 4; // Derived: samples the first section is ahead by.

HWY_INLINE CFour FourOf(float a, float b, float c) {
    CFour const ac = hn::InterleaveLower(kFour, hn::Set(kFour, a), hn::Set(kFour, c));
    CFour const b0 = hn::InterleaveLower(kFour, hn::Set(kFour, b), hn::Zero(kFour));
    return hn::InterleaveLower(kFour, ac, b0);
}

/// The second section runs two samples behind the first and the third two behind the second: what a
/// section needs of the one before it was ready two steps ago.
void ThreeLanes(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    FilterOne(sections[0], x, state, kAhead, 1);
    FilterOne(sections[1], x, state + kIIRStates, kAhead / 2, 1);
    auto const lanesOf = [&](float CIIRSection::*value) {
        return FourOf(sections[0].*value, sections[1].*value, sections[2].*value);
    };
    CStep<CFour> const step{lanesOf(&CIIRSection::m_fB0), lanesOf(&CIIRSection::m_fB1),
                            lanesOf(&CIIRSection::m_fB2), lanesOf(&CIIRSection::m_fA1),
                            lanesOf(&CIIRSection::m_fA2)};
    CFour w1 = FourOf(state[1], state[4], state[7]);
    CFour w2 = FourOf(state[2], state[5], state[8]);
    CFour before = FourOf(x[2], x[0], 0.0f); // outputs of two steps ago
    CFour last = FourOf(x[3], x[1], 0.0f);   // outputs of one step ago
    for (std::int32_t i = kAhead; i < count; ++i) {
        // Each output goes to the section behind, and a new sample to the first.
        CFour const in = hn::CombineShiftRightLanes<3>(kFour, before, hn::Set(kFour, x[i]));
        CFour const outputs = step.Run(in, w1, w2);
        x[i - kAhead] = hn::GetLane(hn::UpperHalf(hn::Half<CFourTag>(), outputs));
        before = last;
        last = outputs;
    }
    for (std::size_t i = 0; i < kThreeSections; ++i) {
        state[kIIRStates * i] = state[kIIRStates * i + 1] = hn::ExtractLane(w1, i);
        state[kIIRStates * i + 2] = hn::ExtractLane(w2, i);
    }
    // The last four samples have passed the first section, or the first two.
    float* const tail = x + count - kAhead;
    hn::StoreU(hn::Shuffle1032(hn::InterleaveLower(kFour, before, last)), kFour, tail);
    FilterOne(sections[1], tail + 2, state + kIIRStates, kAhead / 2, 1);
    FilterOne(sections[2], tail, state + 2 * kIIRStates, kAhead, 1);
}

/// The lanes of one register, and what is on its way from one section to the next.
class CCascade {
public:
    HWY_INLINE CCascade(CIIRSection const& section, std::span<CIIRLane const> lanes)
        : m_step{hn::Set(kTag, section.m_fB0), hn::Set(kTag, section.m_fB1),
                 hn::Set(kTag, section.m_fB2), hn::Set(kTag, section.m_fA1),
                 hn::Set(kTag, section.m_fA2)} {
        float states[kStates][kLanes];
        for (std::size_t i = 0; i < kLanes; ++i) {
            CIIRLane const& lane = lanes[i < lanes.size() ? i : 0];
            m_pIn[i] = lane.m_pIn;
            m_pOut[i] = lane.m_pOut;
            for (std::size_t k = 0; k < kStates; ++k) {
                states[k][i] = (*lane.m_pState)[k];
            }
        }
        for (std::size_t k = 0; k < kStates; ++k) {
            m_states[k] = hn::LoadU(kTag, states[k]);
        }
    }

    /// Samples k .. k + 3 through the first section, the four before them through the second, the
    /// four before those through the third. Sections that have no samples are left out.
    template <bool kHasFirst, bool kHasSecond, bool kHasThird>
    HWY_INLINE void RunBlock(std::ptrdiff_t k) {
        CLanes in[kBlock];
        CLanes out[kBlock];
        if constexpr (kHasFirst) {
            LoadRows(m_pIn, k, in);
            TurnRows(in);
        }
        for (std::size_t i = 0; i < kBlock; ++i) {
            if constexpr (kHasThird) {
                out[i] = m_step.Run(m_second[i], m_states[4], m_states[5]);
            }
            if constexpr (kHasSecond) {
                m_second[i] = m_step.Run(m_first[i], m_states[2], m_states[3]);
            }
            if constexpr (kHasFirst) {
                m_first[i] = m_step.Run(in[i], m_states[0], m_states[1]);
            }
        }
        if constexpr (kHasThird) {
            TurnRows(out);
            StoreRows(out, m_pOut, k - kDelay);
        }
    }

    HWY_INLINE void StoreStates(std::span<CIIRLane const> lanes) const {
        float states[kStates][kLanes];
        for (std::size_t k = 0; k < kStates; ++k) {
            hn::StoreU(m_states[k], kTag, states[k]);
        }
        for (std::size_t i = 0; i < lanes.size(); ++i) {
            for (std::size_t k = 0; k < kStates; ++k) {
                (*lanes[i].m_pState)[k] = states[k][i];
            }
        }
    }

    /// Samples from the first section to what the third one stores.
    static constexpr std::ptrdiff_t kDelay = 2 * kBlock;

private:
    static constexpr CLaneTag kTag{};
    static constexpr std::size_t kStates = std::tuple_size_v<CThreeStates>;

    CStep<CLanes> m_step;
    float const* m_pIn[kLanes];
    float* m_pOut[kLanes];
    CLanes m_states[kStates];
    CLanes m_first[kBlock];  // outputs of the first section
    CLanes m_second[kBlock]; // of the second
};

HWY_INLINE void FilterTogether(CIIRSection const& section, std::span<CIIRLane const> lanes,
                               std::int32_t count) {
    constexpr std::ptrdiff_t kStep = kBlock;
    CCascade cascade(section, lanes);
    cascade.RunBlock<true, false, false>(0);
    cascade.RunBlock<true, true, false>(kStep);
    for (std::ptrdiff_t k = CCascade::kDelay; k < count; k += kStep) {
        cascade.RunBlock<true, true, true>(k);
    }
    cascade.RunBlock<false, true, true>(count);
    cascade.RunBlock<false, false, true>(count + kStep);
    cascade.StoreStates(lanes);
}

#else

void ThreeLanes(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    CThreeSections const s = sections;
    float w[] = {state[1], state[2], state[4], state[5], state[7], state[8]};
    for (std::int32_t i = 0; i < count; ++i) {
        x[i] = s[2].Run(s[1].Run(s[0].Run(x[i], w[0], w[1]), w[2], w[3]), w[4], w[5]);
    }
    for (std::size_t i = 0; i < kThreeSections; ++i) {
        state[kIIRStates * i] = state[kIIRStates * i + 1] = w[2 * i];
        state[kIIRStates * i + 2] = w[2 * i + 1];
    }
}

#endif

void RunLanes(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count) {
#if HWY_TARGET != HWY_SCALAR
    while (lanes.size() > 1) {
        std::size_t const taken = std::min(lanes.size(), kLanes);
        FilterTogether(section, lanes.first(taken), count);
        lanes = lanes.subspan(taken);
    }
#endif
    for (CIIRLane const& lane : lanes) {
        CThreeStates& s = *lane.m_pState;
        float state[] = {s[0], s[0], s[1], s[2], s[2], s[3], s[4], s[4], s[5]};
        std::copy_n(lane.m_pIn, count, lane.m_pOut);
        ThreeLanes({section, section, section}, lane.m_pOut, state, count);
        s = {state[1], state[2], state[4], state[5], state[7], state[8]};
    }
}

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

constexpr std::int32_t kShortestBlock = 16; // Tuned: BM_BassFilter; shorter ones are all edges.

HWY_EXPORT(LaneCount);
HWY_EXPORT(ThreeLanes);
HWY_EXPORT(RunLanes);

std::int32_t GetLaneCount() {
    return HWY_DYNAMIC_DISPATCH(LaneCount)();
}

void FilterThree(CThreeSections const& sections, float* x, float* state, std::int32_t count) {
    if (count < kShortestBlock) {
        for (std::size_t i = 0; i < kThreeSections; ++i) {
            FilterOne(sections[i], x, state + kIIRStates * i, count, 1);
        }
        return;
    }
    HWY_DYNAMIC_DISPATCH(ThreeLanes)(sections, x, state, count);
}

void FilterLanes(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count) {
    if (count < kShortestBlock) {
        std::ranges::for_each(lanes,
                              [&](CIIRLane const& lane) { FilterLanePlain(section, lane, count); });
        return;
    }
    HWY_DYNAMIC_DISPATCH(RunLanes)(section, lanes, count);
}

void FilterLanePlain(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    auto [u1, u2, v1, v2, w1, w2] = *lane.m_pState;
    for (std::int32_t i = 0; i < count; ++i) {
        float const first = section.Run(lane.m_pIn[i], u1, u2);
        lane.m_pOut[i] = section.Run(section.Run(first, v1, v2), w1, w2);
    }
    *lane.m_pState = {u1, u2, v1, v2, w1, w2};
}

#endif
