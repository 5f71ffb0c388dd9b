// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/UndoSteps.h"

#include "song/TempoText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kRoundingBpm = 0.02; // Derived: twice 0.005 before, and 0.005 after; above that.
constexpr std::array<char const*, 6> kRatioWords = {"x2", "/2", "3:2", "2:3", "4:3", "3:4"};

/// Takes note of a batch that took back another one, or did it again.
void NoteUndo(std::vector<CStep>& steps, CJournalBatch const& batch) {
    auto const step = std::ranges::find(steps, *batch.m_undoes, &CStep::m_nLatest);
    if (step != steps.end()) {
        step->m_nLatest = batch.m_nId;
        step->m_nWrites = static_cast<std::size_t>(batch.m_nWrites);
        step->m_bUndoneOnDisk = !step->m_bUndoneOnDisk;
    }
}

std::vector<CStep> StepsOnDisk(std::vector<CJournalBatch> const& batches) {
    std::vector<CStep> steps;
    for (auto next = batches.rbegin(); next != batches.rend(); ++next) {
        CJournalBatch const& batch = *next;
        if (batch.m_undoes) {
            NoteUndo(steps, batch);
        } else if (batch.m_eWriter == EJournalWriter::Window) {
            steps.push_back({.m_nTime = batch.m_nTime,
                             .m_nRoot = batch.m_nId,
                             .m_nLatest = batch.m_nId,
                             .m_nWrites = static_cast<std::size_t>(batch.m_nWrites)});
        }
    }
    return steps;
}

void AddMemory(std::vector<CStep>& steps, CStepMemory& memory) {
    auto const onDisk =
        memory.m_batch ? std::ranges::find(steps, *memory.m_batch, &CStep::m_nRoot) : steps.end();
    if (onDisk != steps.end()) {
        onDisk->m_pMemory = &memory;
    } else {
        steps.push_back({.m_nTime = memory.m_nTime, .m_pMemory = &memory});
    }
}

bool IsRatio(CJournalEntry const& entry, CTempoFix const& ratio) {
    double const before = LeadingNumber(CString::FromUtf8(entry.m_textBefore.value_or("")));
    double const after = LeadingNumber(CString::FromUtf8(entry.m_textAfter.value_or("")));
    return before > 0.0 && std::abs(FixedTempo(ratio, before) - after) < kRoundingBpm;
}

} // namespace

std::vector<CStep> StepsOf(std::vector<CJournalBatch> const& batches,
                           std::list<CStepMemory>& memories,
                           std::set<std::int64_t> const& leftOut) {
    std::vector<CStep> steps = StepsOnDisk(batches);
    for (CStepMemory& memory : memories) {
        AddMemory(steps, memory);
    }
    std::erase_if(steps, [&](CStep const& step) { return leftOut.contains(step.m_nRoot); });
    std::ranges::stable_sort(steps, {}, &CStep::m_nTime);
    for (CStep& step : steps) {
        step.m_bUndone =
            step.m_bUndoneOnDisk || (step.m_pMemory != nullptr && step.m_pMemory->m_bUndone);
    }
    auto const lastDone = std::find_if(steps.rbegin(), steps.rend(),
                                       [](CStep const& step) { return !step.m_bUndone; });
    auto const tail = lastDone.base(); // what is behind it can be done again
    auto const kept = std::stable_partition(steps.begin(), tail,
                                            [](CStep const& step) { return !step.m_bUndone; });
    steps.erase(kept, tail);
    return steps;
}

CStep const* StepToUndo(std::vector<CStep> const& steps) {
    auto const found = std::find_if(steps.rbegin(), steps.rend(),
                                    [](CStep const& step) { return !step.m_bUndone; });
    return found != steps.rend() ? &*found : nullptr;
}

CStep const* StepToRedo(std::vector<CStep> const& steps) {
    auto const found = std::ranges::find_if(steps, &CStep::m_bUndone);
    return found != steps.end() ? &*found : nullptr;
}

std::optional<CTempoFix> RatioOf(std::vector<CJournalEntry> const& entries) {
    for (char const* const word : kRatioWords) {
        std::optional<CTempoFix> ratio = TempoFixOf(word);
        if (!entries.empty() && ratio &&
            std::ranges::all_of(
                entries, [&](CJournalEntry const& entry) { return IsRatio(entry, *ratio); })) {
            return ratio;
        }
    }
    return std::nullopt;
}
