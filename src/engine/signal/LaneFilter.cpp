// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Run and Finish repeat
//   StartRunners   as many as there are lanes, each a spacing ahead of the last
//   RunBurst       one burst of every runner that has samples: side by side (FilterLanes), quiet
//                  ones by themselves (RunQuiet)
//     PassRecord   ends a runner that meets the states left there, else leaves its own

#include "engine/signal/LaneFilter.h"

#include "engine/signal/QuietFilter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr std::int64_t kBurst = 512; // Tuned: BM_LaneFilter; samples between two records.

// Derived: a quarter of a page of 4096 bytes. What comes and what goes would else stand at the same
// places of their pages, where a processor takes a load for one that waits for a store.
constexpr std::int64_t kGapSamples = 256;

std::int64_t RoundUp(std::int64_t samples, std::int64_t step) {
    return (samples + step - 1) / step * step;
}

std::int64_t RoundUpToBursts(std::int64_t samples) {
    // An odd number of bursts, so that neighbours don't stand at the same places of their pages.
    return (RoundUp(samples, kBurst) / kBurst | 1) * kBurst;
}

} // namespace

CLaneFilter::CLaneFilter(CIIRSection const& section, std::int32_t lanes, std::int64_t spacing)
    : m_section(section),
      m_nLanes(lanes),
      m_nSpacing(RoundUpToBursts(spacing)),
      m_nRoom(m_nSpacing * (lanes + 1)),
      m_pRoom(
          new (std::nothrow) float[static_cast<std::size_t>(2 * m_nRoom + kGapSamples + kWindow)]),
      m_vRecords(BurstAt(m_nRoom - 1) + 1),
      m_vRunners{CRunner{}} {
    m_vRunners.reserve(static_cast<std::size_t>(lanes));
    if (m_pRoom != nullptr) {
        m_pOut = m_pRoom.get() + m_nRoom + kGapSamples;
    }
}

std::size_t CLaneFilter::BurstAt(std::int64_t pos) const {
    return static_cast<std::size_t>(pos % m_nRoom / kBurst);
}

std::int64_t CLaneFilter::GetRunnable() const {
    return m_nTaken / kBurst * kBurst;
}

std::int64_t CLaneFilter::GetFinishedEnd() const {
    return m_bFinished ? m_nTaken : m_vRunners.front().m_nPos;
}

CIIRLane CLaneFilter::LaneOf(CRunner& runner) {
    std::size_t const at = At(runner.m_nPos);
    return {m_pRoom.get() + at, m_pOut + at, &runner.m_states};
}

std::size_t CLaneFilter::Push(std::span<float const> samples) {
    if (m_bFinished) {
        Restart();
    }
    auto const room = static_cast<std::size_t>(m_nDropped + m_nRoom - m_nTaken);
    samples = samples.first(std::min(samples.size(), room));
    std::size_t const at = At(m_nTaken);
    std::size_t const first = std::min(samples.size(), static_cast<std::size_t>(m_nRoom) - at);
    std::ranges::copy(samples.first(first), m_pRoom.get() + at);
    std::ranges::copy(samples.subspan(first), m_pRoom.get());
    m_nTaken += static_cast<std::int64_t>(samples.size());
    return samples.size();
}

void CLaneFilter::Run() {
    StartRunners();
    while (GetFinishedEnd() - m_nDropped < m_nSpacing && RunBurst()) {
        StartRunners();
    }
}

void CLaneFilter::Finish() {
    if (m_bFinished) {
        return;
    }
    StartRunners();
    while (RunBurst()) {
        StartRunners();
    }
    FinishRest();
}

void CLaneFilter::StartRunners() {
    while (m_vRunners.size() < static_cast<std::size_t>(m_nLanes)) {
        std::int64_t const start = m_vRunners.back().m_nPos + m_nSpacing;
        if (start >= GetRunnable()) {
            return;
        }
        m_vRunners.push_back({.m_nPos = start, .m_states = {}});
        m_vRecords[BurstAt(start)] = {start, {}};
    }
}

/// Returns: false when no runner had samples for a burst.
bool CLaneFilter::RunBurst() {
    std::array<CIIRLane, kMostLanes> loud;
    std::size_t loudCount = 0;
    std::int64_t const end = GetRunnable();
    for (CRunner& runner : m_vRunners) {
        if (runner.m_nPos == end) {
            continue;
        }
        if (IsQuiet(runner.m_states)) {
            RunQuiet(runner);
        } else {
            runner.m_bSilent = false;
            loud[loudCount++] = LaneOf(runner);
        }
    }
    FilterLanes(m_section, {loud.data(), loudCount}, kBurst);
    bool hasRun = false;
    // From the one furthest on, so that the one behind it finds what it left.
    for (std::size_t i = m_vRunners.size(); i-- > 0;) {
        if (m_vRunners[i].m_nPos != end) {
            hasRun = true;
            m_vRunners[i].m_nPos += kBurst;
            if (PassRecord(i)) {
                m_vRunners.erase(m_vRunners.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    }
    return hasRun;
}

/// One burst of a runner with small states. A decay that is known is not computed again.
void CLaneFilter::RunQuiet(CRunner& runner) {
    CIIRLane const lane = LaneOf(runner);
    bool const wasSilent =
        std::exchange(runner.m_bSilent, CountSilent(lane.m_pIn, kBurst) == kBurst);
    if (!runner.m_bSilent) {
        FilterQuiet(m_section, lane, kBurst);
        return;
    }
    if (!wasSilent) {
        runner.m_nInDecay = m_decay.Find(runner.m_states);
    }
    if (runner.m_nInDecay && m_decay.Replay(*runner.m_nInDecay, lane, kBurst)) {
        *runner.m_nInDecay += kBurst;
        return;
    }
    if (!wasSilent && !runner.m_nInDecay) {
        m_decay.Start(runner.m_states);
    }
    runner.m_nInDecay.reset();
    bool const isNew = m_decay.Continues(runner.m_states);
    FilterSilence(m_section, lane, kBurst, isNew ? &m_decay : nullptr);
}

/// Returns: true when the runner has met what the one ahead of it left.
bool CLaneFilter::PassRecord(std::size_t i) {
    CRunner const& runner = m_vRunners[i];
    CRecord& record = m_vRecords[BurstAt(runner.m_nPos)];
    if (i + 1 < m_vRunners.size() && record.m_nPos == runner.m_nPos &&
        AreSame(record.m_states, runner.m_states)) {
        return true;
    }
    record = {runner.m_nPos, runner.m_states};
    // One ahead that waits for samples at the same place has nothing to add.
    while (i + 1 < m_vRunners.size() && m_vRunners[i + 1].m_nPos == runner.m_nPos) {
        m_vRunners.erase(m_vRunners.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    }
    return false;
}

/// The samples behind the last whole burst, by the one runner that is left there.
void CLaneFilter::FinishRest() {
    CRunner& runner = m_vRunners.front();
    FilterLanePlain(m_section, LaneOf(runner), static_cast<std::int32_t>(m_nTaken - runner.m_nPos));
    m_bFinished = true;
}

/// Goes on with the states at the end, as if the stream began with what is left there.
void CLaneFilter::Restart() {
    std::span<float const> const left = GetFinished();
    auto const count = static_cast<std::int64_t>(left.size());
    m_nTaken = RoundUp(count, kBurst);
    m_nDropped = m_nTaken - count;
    std::memmove(m_pOut + m_nDropped, left.data(), left.size_bytes());
    m_vRunners.front().m_nPos = m_nTaken;
    std::ranges::fill(m_vRecords, CRecord{});
    m_bFinished = false;
}

std::span<float const> CLaneFilter::GetFinished() {
    auto const at = static_cast<std::int64_t>(At(m_nDropped));
    std::int64_t const count = GetFinishedEnd() - m_nDropped;
    std::int64_t const untilEnd = m_nRoom - at;
    // Behind the ring there is room for what a window needs of its beginning.
    std::int64_t const wrapped = std::clamp<std::int64_t>(kWindow - untilEnd, 0, kWindow);
    std::int64_t const repeated = std::clamp<std::int64_t>(count - untilEnd, 0, wrapped);
    std::copy_n(m_pOut, repeated, m_pOut + m_nRoom);
    return {m_pOut + at, static_cast<std::size_t>(std::min(count, untilEnd + repeated))};
}

void CLaneFilter::Drop(std::size_t count) {
    m_nDropped += static_cast<std::int64_t>(count);
}
