// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FilterQuiet
//   FillWhenFixed   silence that leaves the states as they are: one output for all of it
//   FilterStretch   in blocks, each section one block behind the one before it; the three blocks
//                   don't wait for each other, and so go sample by sample together
//     RunStates       what the sections remember, each in its own way by the size of what goes in:
//                     floats, or on the grid of 2^-149 in double, or between the two with care
//     WriteOutputs    from the states alone, many at once; below 2^-125 on the same grid

#include "engine/signal/QuietFilter.h"

#include "engine/signal/WideSection.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>
#include <vector>

namespace {

constexpr std::size_t kSections = 3;
constexpr std::size_t kBlock = 32;     // Tuned: BM_EngineClicks; samples judged at once.
constexpr std::int32_t kStretch = 512; // Tuned: BM_EngineClicks; until silence is judged anew.

// Derived: sizes of a float as its bits, which are in the same order; 127 + n stands for 2^n.
constexpr std::uint32_t kTinyBits = 0x00800000;      // 2^-126
constexpr std::uint32_t kNearTinyBits = 0x00B504F3;  // 2^-125.5: 32 samples of decay above it
constexpr std::uint32_t kSmallBits = 16U << 23U;     // 2^-111: below it products get subnormal
constexpr std::uint32_t kNearSmallBits = 25U << 23U; // 2^-102: 512 samples of decay above it

constexpr double kOnGrid = 0x1.FFp-126; // Derived: 2^-125 less what three roundings may add.

/// Size of the largest sample, as its bits.
std::uint32_t LargestOf(std::span<float const> samples) {
    std::int32_t largest = 0; // without the sign all fit
    for (float const sample : samples) {
        largest = std::max(
            largest, static_cast<std::int32_t>(std::bit_cast<std::uint32_t>(sample) & kMagnitude));
    }
    return static_cast<std::uint32_t>(largest);
}

/// Samples on their way through the sections, and what one of them remembers: w1, w2.
using CBlock = std::span<float>;
using CStates = std::span<float, 2>;

enum class EWay { Float, Tiny, Careful };

/// A block at one of the sections. What that remembers stands in time's order: w2 and w1 before the
/// block, and then one number for each sample.
struct CJob {
    CBlock m_block;
    CStates m_states;
    EWay m_eWay = EWay::Float;
    double m_dLargest = 0.0;                // size of the largest state, unless they are floats
    std::array<float, kBlock + 2> m_w;      // as floats
    std::array<double, kBlock + 2> m_dWide; // otherwise

    CJob(CBlock block, CStates states) : m_block(block), m_states(states) {
        std::uint32_t const largest = LargestOf(states);
        if (LargestOf(block) < kTinyBits && largest < kNearTinyBits) {
            m_eWay = largest < kTinyBits ? EWay::Tiny : EWay::Careful;
        }
    }
};

/// A section for both ways.
struct CBothSections {
    CIIRSection m_narrow;
    CWideSection m_wide;
    double m_dGain; // no output is larger than it times the largest state

    explicit CBothSections(CIIRSection const& section)
        : m_narrow(section),
          m_wide(section),
          m_dGain(std::abs(m_wide.m_dB0) + std::abs(m_wide.m_dB1) + std::abs(m_wide.m_dB2)) {}
};

/// The states of a block in double, right for any size.
void RunCareful(CWideSection const& section, CJob& job) {
    double* const w = job.m_dWide.data();
    w[0] = Widen(job.m_states[1]);
    w[1] = Widen(job.m_states[0]);
    job.m_dLargest = std::max(std::abs(w[0]), std::abs(w[1]));
    std::size_t const count = job.m_block.size();
    for (std::size_t k = 0; k < count; ++k) {
        w[k + 2] = section.State(Widen(job.m_block[k]), w[k + 1], w[k]);
        job.m_dLargest = std::max(job.m_dLargest, std::abs(w[k + 2]));
    }
    job.m_states[0] = Narrow(w[count + 1]);
    job.m_states[1] = Narrow(w[count]);
}

/// The states of a block, sample by sample, as floats.
class CFloatChain {
public:
    explicit CFloatChain(CJob& job) : m_job(job), m_w1(job.m_states[0]), m_w2(job.m_states[1]) {
        job.m_w[0] = m_w2;
        job.m_w[1] = m_w1;
    }

    void Step(CBothSections const& sections, std::size_t k) {
        CIIRSection const& section = sections.m_narrow;
        float const w0 = m_job.m_block[k] - (section.m_fA1 * m_w1 + section.m_fA2 * m_w2);
        m_job.m_w[k + 2] = w0;
        m_w2 = m_w1;
        m_w1 = w0;
    }

    void End(CBothSections const& /*sections*/) {
        m_job.m_states[0] = m_w1;
        m_job.m_states[1] = m_w2;
    }

private:
    CJob& m_job;
    float m_w1, m_w2;
};

/// The same on the grid. A block that leaves it, or has a zero, is done anew with care.
class CTinyChain {
public:
    explicit CTinyChain(CJob& job)
        : m_job(job), m_w1(WidenTiny(job.m_states[0])), m_w2(WidenTiny(job.m_states[1])) {
        job.m_dWide[0] = m_w2;
        job.m_dWide[1] = m_w1;
        std::ranges::transform(job.m_block, job.m_dWide.begin() + 2, WidenTiny);
    }

    void Step(CBothSections const& sections, std::size_t k) {
        double const w0 = sections.m_wide.TinyState(m_job.m_dWide[k + 2], m_w1, m_w2);
        m_job.m_dWide[k + 2] = w0;
        m_least = std::min(m_least, std::abs(w0));
        m_largest = std::max(m_largest, std::abs(w0));
        m_w2 = m_w1;
        m_w1 = w0;
    }

    void End(CBothSections const& sections) {
        if (m_least == 0.0 || m_largest >= kSmallestNormal) {
            RunCareful(sections.m_wide, m_job);
            return;
        }
        m_job.m_dLargest = kSmallestNormal;
        m_job.m_states[0] = NarrowTiny(m_w1);
        m_job.m_states[1] = NarrowTiny(m_w2);
    }

private:
    CJob& m_job;
    double m_w1, m_w2;
    double m_least = kSmallestNormal;
    double m_largest = 0.0;
};

/// Chains that don't wait for each other, by value, so that they stay in registers.
template <typename... Chains>
void RunChains(CBothSections const sections, std::size_t length, Chains... chains) {
    for (std::size_t k = 0; k < length; ++k) {
        (chains.Step(sections, k), ...);
    }
    (chains.End(sections), ...);
}

/// All jobs, of blocks of one length, at once; `chains` are those of the jobs before them.
template <typename... Chains>
void RunStates(CBothSections const& sections, std::span<CJob> jobs, std::size_t length,
               Chains const&... chains) {
    while (!jobs.empty() && jobs[0].m_eWay == EWay::Careful) {
        RunCareful(sections.m_wide, jobs[0]);
        jobs = jobs.subspan(1);
    }
    if constexpr (sizeof...(Chains) < kSections) {
        if (!jobs.empty() && jobs[0].m_eWay == EWay::Tiny) {
            RunStates(sections, jobs.subspan(1), length, chains..., CTinyChain(jobs[0]));
            return;
        }
        if (!jobs.empty()) {
            RunStates(sections, jobs.subspan(1), length, chains..., CFloatChain(jobs[0]));
            return;
        }
    }
    if constexpr (sizeof...(Chains) > 0) {
        RunChains(sections, length, chains...);
    }
}

/// Outputs that keep below 2^-125, where all floats are whole multiples of 2^-149.
void WriteOnGrid(CWideSection const section, double const* w, CBlock block) {
    for (std::size_t k = 0; k < block.size(); ++k) {
        block[k] = NarrowTiny(section.TinyOutput(w[k + 2], w[k + 1], w[k]));
    }
}

/// Outputs that may be subnormal, or not.
void WriteSmall(CWideSection const& section, double const* w, CBlock block) {
    for (std::size_t k = 0; k < block.size(); ++k) {
        block[k] = Narrow(section.Output(w[k + 2], w[k + 1], w[k]));
    }
}

void WriteLoud(CIIRSection const& section, float const* w, CBlock block) {
    for (std::size_t k = 0; k < block.size(); ++k) {
        block[k] = section.m_fB2 * w[k] + section.m_fB0 * w[k + 2] + section.m_fB1 * w[k + 1];
    }
}

void WriteOutputs(CBothSections const& sections, CJob& job) {
    if (job.m_eWay == EWay::Float) {
        auto const states = std::span(job.m_w).first(job.m_block.size() + 2);
        std::uint32_t const largest = LargestOf(states);
        if (largest >= kSmallBits) {
            WriteLoud(sections.m_narrow, job.m_w.data(), job.m_block);
            return;
        }
        std::ranges::copy(states, job.m_dWide.begin());
        job.m_dLargest = Widen(std::bit_cast<float>(largest));
    }
    if (sections.m_dGain * job.m_dLargest < kOnGrid) {
        WriteOnGrid(sections.m_wide, job.m_dWide.data(), job.m_block);
    } else {
        WriteSmall(sections.m_wide, job.m_dWide.data(), job.m_block);
    }
}

/// Fills the block when silence leaves the states as they are. Returns: whether it does.
bool FillWhenFixed(CWideSection const& section, CIIRLane const& lane, std::int32_t count) {
    double output = 0.0;
    for (std::size_t i = 0; i < lane.m_pState->size(); i += 2) {
        std::array<float, 2> const before{(*lane.m_pState)[i], (*lane.m_pState)[i + 1]};
        double const w1 = Widen(before[0]);
        double const w2 = Widen(before[1]);
        double const w0 = section.State(output, w1, w2);
        output = section.Output(w0, w1, w2);
        using Bits = std::array<std::uint32_t, 2>;
        if (std::bit_cast<Bits>(before) !=
            std::bit_cast<Bits>(std::array<float, 2>{Narrow(w0), before[0]})) {
            return false;
        }
    }
    std::fill_n(lane.m_pOut, count, Narrow(output));
    return true;
}

/// Puts the states of a job, which stands somewhere in the lane, down in the decay.
void Remember(CJob const& job, CIIRLane const& lane, CDecay& decay) {
    auto const section = static_cast<std::size_t>(job.m_states.data() - lane.m_pState->data()) / 2;
    auto const at = static_cast<std::size_t>(job.m_block.data() - lane.m_pOut);
    std::span<float> const states = decay.NewStates(section).subspan(at, job.m_block.size());
    for (std::size_t k = 0; k < states.size(); ++k) {
        states[k] = job.m_eWay == EWay::Float ? job.m_w[k + 2] : Narrow(job.m_dWide[k + 2]);
    }
}

void FilterStretch(CBothSections const& sections, CIIRLane const& lane, std::int32_t count,
                   CDecay* decay) {
    std::span<float> const stretch{lane.m_pOut, static_cast<std::size_t>(count)};
    std::copy_n(lane.m_pIn, count, lane.m_pOut);
    if (decay != nullptr) {
        decay->Extend(count);
    }
    std::size_t const blocks = (stretch.size() + kBlock - 1) / kBlock;
    std::vector<CJob> jobs;
    jobs.reserve(kSections);
    for (std::size_t step = 0; step < blocks + kSections - 1; ++step) {
        jobs.clear();
        for (std::size_t i = 0; i < kSections; ++i) {
            if (step >= i && step - i < blocks) {
                std::size_t const at = (step - i) * kBlock;
                jobs.emplace_back(stretch.subspan(at, std::min(kBlock, stretch.size() - at)),
                                  CStates(lane.m_pState->data() + 2 * i, 2));
            }
        }
        if (jobs.front().m_block.size() == jobs.back().m_block.size()) {
            RunStates(sections, jobs, jobs.front().m_block.size());
        } else {
            for (CJob& job : jobs) {
                RunStates(sections, {&job, 1}, job.m_block.size());
            }
        }
        for (CJob& job : jobs) {
            WriteOutputs(sections, job);
            if (decay != nullptr) {
                Remember(job, lane, *decay);
            }
        }
    }
    if (decay != nullptr) {
        std::ranges::copy(stretch, decay->NewOutputs().begin());
    }
}

/// Samples at the beginning that keep below `bits`.
std::int32_t CountBelow(std::uint32_t bits, float const* samples, std::int32_t count) {
    auto const end = std::find_if(samples, samples + count, [bits](float sample) {
        return (std::bit_cast<std::uint32_t>(sample) & kMagnitude) >= bits;
    });
    return static_cast<std::int32_t>(end - samples);
}

} // namespace

std::int32_t CountSilent(float const* samples, std::int32_t count) {
    constexpr std::int32_t kAtOnce = 64;
    std::int32_t silent = 0;
    std::uint32_t any = 0;
    while (count - silent >= kAtOnce && any == 0) {
        for (std::int32_t i = 0; i < kAtOnce; ++i) {
            any |= std::bit_cast<std::uint32_t>(samples[silent + i]);
        }
        silent += any == 0 ? kAtOnce : 0;
    }
    while (silent < count && std::bit_cast<std::uint32_t>(samples[silent]) == 0) {
        ++silent;
    }
    return silent;
}

bool IsQuiet(CThreeStates const& states) {
    // The first section gets small long before the last, which still hears it.
    std::span<float const, 6> const all(states);
    return LargestOf(all.subspan<0, 2>()) < kNearSmallBits ||
           LargestOf(all.subspan<2, 2>()) < kNearSmallBits ||
           LargestOf(all.subspan<4, 2>()) < kNearSmallBits;
}

void FilterSilence(CIIRSection const& section, CIIRLane const& lane, std::int32_t count,
                   CDecay* decay) {
    CBothSections const sections(section);
    for (std::int32_t i = 0; i < count; i += kStretch) {
        CIIRLane const rest{lane.m_pIn + i, lane.m_pOut + i, lane.m_pState};
        if (FillWhenFixed(sections.m_wide, rest, count - i)) {
            return;
        }
        FilterStretch(sections, rest, std::min(kStretch, count - i), decay);
    }
}

void FilterQuiet(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    CBothSections const sections(section);
    for (std::int32_t i = 0; i < count;) {
        CIIRLane const rest{lane.m_pIn + i, lane.m_pOut + i, lane.m_pState};
        std::int32_t const silent = CountSilent(rest.m_pIn, count - i);
        if (silent > 0) {
            FilterSilence(section, rest, silent);
            i += silent;
            continue;
        }
        std::int32_t const stretch = std::min(kStretch, count - i);
        std::int32_t const quiet = CountBelow(kSmallBits, rest.m_pIn, stretch);
        std::int32_t const taken =
            quiet > 0 ? quiet : std::min(static_cast<std::int32_t>(kBlock), stretch);
        FilterStretch(sections, rest, taken, nullptr);
        i += taken;
    }
}
