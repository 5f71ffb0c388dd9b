// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// PushPcm: hand the block to the filter, which gathers many seconds before it works, and note down
// how long a stride is: at least 61440 samples.
// TakeFiltered: of each stride that is filtered, SearchAndMeasure the first 32768 samples where
// they lie in the filter, and drop them there (EndStride). FinalizeNoteDetection: the same for what
// is left, then prune the map. The search itself is in NoteSearch.cpp, the order of the notes in
// NoteMap.cpp.

#include "engine/notes/NoteDetector.h"

#include "base/EngineRate.h"
#include "base/Rounding.h"
#include "base/TimeUtil.h"
#include "engine/Profiler.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/notes/NoteSearch.h"
#include "engine/signal/IIRFilt.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::int32_t kMostSamples = 65536;      // Fixed: a stride is shorter.
constexpr std::int32_t kSearchAbove = 61439;      // Fixed: samples above which one is searched.
constexpr std::int32_t kStrideSamples = 32768;    // Fixed: samples that one search is through with.
constexpr std::uint16_t kSamplesPerElement = 256; // Fixed: of the bass thumbnail.
constexpr std::int64_t kPruneWindow = 500'000;    // Fixed: half a second in microseconds.

// Three sections alike make a low-pass of the sixth order.
constexpr float kFilterHz = 120.0f;     // Fixed: corner of each section.
constexpr float kFilterDamping = 1.25f; // Fixed: damping of each section.

// Tuned: BM_NoteDetectorSong and the peak memory of bench/lengths.sh; samples between two places
// that are filtered at once. Nine of them with the lanes of AVX make 11 MiB.
constexpr std::int64_t kLaneSpacing = 160'000;

// A run of the filter always ends a stride, and sees it in one piece.
static_assert(kLaneSpacing >= kMostSamples && CLaneFilter::kWindow >= kMostSamples);

// Derived: 1 / (55 * 2^((k - 9) / 12)) seconds for C at 32.703 Hz (k = 0) to B at 123.471 Hz
// (k = 23), rounded to nine decimal places.
constexpr double g_fNotePeriods[] = {
    0.030578051, 0.028861837, 0.027241947, 0.025712974, 0.024269816, 0.022907655,
    0.021621948, 0.020408401, 0.019262965, 0.018181818, 0.017161351, 0.016198159,
    0.015289026, 0.014430919, 0.013620973, 0.012856487, 0.012134908, 0.011453828,
    0.010810974, 0.010204200, 0.009631483, 0.009090909, 0.008580676, 0.008099079};

// Fixed: notes of 45 minutes, 3 MB; a stream of fewer keeps all until it is pruned.
constexpr std::uint32_t kMostNotes = std::uint32_t{1} << 17U;

// Derived: above 2 * 24 * 1348 / 2. Where notes without strength are possible, less than the
// longest period before the stream's end, no more than every other sample is an upward crossing.
constexpr std::uint32_t kStrongestNotes = std::uint32_t{1} << 15U;

CIIRSection DesignSection() {
    CIIRFilt design;
    design.Init(kEngineRateHz); // whatever the reader's rate
    design.SetSectionCount(1);
    design.SetSection(0, CIIRFilt::kLowPass, kFilterHz, kFilterDamping);
    design.setfilt();
    float const* const b = design.GetNumerator(0);
    float const* const a = design.GetDenominator(0);
    return {b[0], b[1], b[2], a[0], a[1]};
}

} // namespace

CPfNoteDetector::CPfNoteDetector(IPcmReader* reader, CPcmThumbnailBuilder* builder,
                                 CPfPcmThumbnail* thumb)
    : m_filter(DesignSection(), GetLaneCount(), kLaneSpacing),
      m_pThumb(thumb),
      m_pThumbBuilder(builder),
      m_nThinAbove(kMostNotes) {
    (void)builder->InitThumbnail(reader, kSamplesPerElement, thumb);
    for (double const period : g_fNotePeriods) {
        m_vPeriods.Add(TruncateToInt32(kEngineRateHz * period));
    }
}

CStatus CPfNoteDetector::PushPcm(float const* pcm, std::uint32_t n) {
    if (!HasMemory()) {
        return kStatusFailure;
    }
    if (std::int64_t{m_nFill} + n < kMostSamples) {
        m_nFill += static_cast<std::int32_t>(n);
        for (std::span<float const> rest(pcm, n); !rest.empty();) {
            rest = rest.subspan(m_filter.Push(rest));
            if (!rest.empty()) {
                m_filter.Run();
                TakeFiltered();
            }
        }
    }
    if (m_nFill > kSearchAbove) {
        m_vStrides.push_back(m_nFill);
        m_nFill -= kStrideSamples;
    }
    return kStatusOk;
}

void CPfNoteDetector::TakeFiltered() {
    for (; !m_vStrides.empty(); m_vStrides.pop_front()) {
        std::span<float const> const done = m_filter.GetFinished();
        auto const length = static_cast<std::size_t>(m_vStrides.front());
        if (done.size() < length) {
            return;
        }
        EndStride(done.first(length));
    }
}

void CPfNoteDetector::EndStride(std::span<float const> stride) {
    // Deliberate: the next stride begins with sample 0 as its past, so the crossing between
    // two strides is never looked at.
    SearchAndMeasure(stride, kStrideSamples);
    m_filter.Drop(kStrideSamples);
    // Wraps at 32 bits, after 13 hours of stream.
    m_nBasePos = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_nBasePos) +
                                           std::uint32_t{kStrideSamples});
    ThinNotes();
}

void CPfNoteDetector::ThinNotes() {
    if (m_noteMap.GetCount() > m_nThinAbove) {
        m_noteMap.Thin(kPruneWindow, SamplePosToTime(m_nBasePos, kEngineRateHz), kStrongestNotes);
        m_nThinAbove = std::max(kMostNotes, 2 * m_noteMap.GetCount());
    }
}

void CPfNoteDetector::CatchUp() {
    m_filter.Finish();
    TakeFiltered();
}

CPfNoteMap* CPfNoteDetector::GetNoteMap() {
    if (HasMemory()) {
        CatchUp();
    }
    return &m_noteMap;
}

CStatus CPfNoteDetector::FindPeriodicWaveforms(float const* buf, std::int32_t scanCount,
                                               std::int32_t dataCount, std::int32_t basePos,
                                               CPfNoteMap* map) const {
    CNoteSearch const search{
        buf, scanCount, dataCount - 1, basePos, {m_vPeriods.GetData(), m_vPeriods.GetCount()}};
    SearchNotes(search, map);
    return kStatusOk;
}

void CPfNoteDetector::SearchAndMeasure(std::span<float const> samples, std::int32_t count) {
    (void)FindPeriodicWaveforms(samples.data(), count, static_cast<std::int32_t>(samples.size()),
                                m_nBasePos, &m_noteMap);
    (void)m_pThumbBuilder->BuildPcmThumbnailRange(samples.data(), count, m_nBasePos, m_pThumb);
}

CStatus CPfNoteDetector::FinalizeNoteDetection(CProfiler* profiler) {
    if (!HasMemory()) {
        return kStatusFailure;
    }
    CatchUp();
    if (profiler->IsCancelled()) {
        return kStatusNothing;
    }
    std::span<float const> const rest = m_filter.GetFinished();
    SearchAndMeasure(rest, static_cast<std::int32_t>(rest.size()));
    m_nFound = m_noteMap.GetHeardCount();
    m_noteMap.ReportItems();
    (void)m_noteMap.RemoveSimilarItems(kPruneWindow);
    m_noteMap.ReportItems();
    return kStatusOk;
}
