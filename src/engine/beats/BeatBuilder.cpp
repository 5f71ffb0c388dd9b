// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Steps of BuildBeatPointsAlt:
// 1. FindCandidates      onsets at eight points to the measure; BuildGrid does the rest
// 2. AverageInterval     first estimate of the step, from the rough tempo
// 3. ClusterFilterPoints chains of evenly spaced onsets (BeatClusters.cpp), and the step again
// 4. BpmOfInterval       the refined tempo
// 5. InterpolatePoints, ExtrapolatePoints: the gaps and both ends (BeatGrid.cpp)

#include "engine/beats/BeatBuilder.h"

#include "engine/envelope/Tempo.h"
#include "engine/tempo/ImpactFinder.h"

#include <algorithm>

namespace {

constexpr std::uint16_t kPointsPerMeasure = 8;      // Fixed: a grid step is half a beat.
constexpr std::uint32_t kPointsPerMeasureShift = 3; // Derived: log2 of the points per measure.
constexpr std::int64_t kConfidenceElements = 8;     // Fixed: elements on each side of a point.

float BpmOfInterval(float interval, std::uint32_t sampleRate, float bpm) {
    if (sampleRate == 0) {
        return bpm;
    }
    float const beatSeconds = interval * static_cast<float>(kPointsPerMeasure) * kMeasuresPerBeat /
                              static_cast<float>(sampleRate);
    return beatSeconds == 0.0f ? bpm : kSecondsPerMinute / beatSeconds;
}

/// Sum of the elements first..last in ascending order, each end held to the thumbnail.
float SumElements(CPfPcmThumbnail const& envelope, std::int64_t first, std::int64_t last) {
    std::int64_t const highest = std::max(envelope.GetCount() - 1, 0);
    auto const begin = static_cast<std::int32_t>(std::clamp<std::int64_t>(first, 0, highest));
    auto const end = static_cast<std::int32_t>(std::clamp<std::int64_t>(last, 0, highest));
    float sum = 0.0f;
    for (std::int32_t i = begin; i <= end; ++i) {
        sum += envelope.GetAt(i);
    }
    return sum;
}

} // namespace

bool CPfBeatBuilder::BuildBeatPointsAlt(CPfPcmThumbnail const* envelope,
                                        CPfPcmThumbnail const* onsets, float* bpm,
                                        CPfImpactPoints* out) const {
    BuildGrid(*envelope, FindCandidates(*onsets), bpm, out);
    return true;
}

CPfImpactPoints CPfBeatBuilder::FindCandidates(CPfPcmThumbnail const& onsets) const {
    CPfImpactPoints candidates(onsets.GetSampleRate(), onsets.GetSampleCount());
    CPfImpactFinder const finder(m_pCancel);
    finder.BuildImpactPoints(&onsets, kPointsPerMeasure, &candidates);
    return candidates;
}

void CPfBeatBuilder::BuildGrid(CPfPcmThumbnail const& envelope, CPfImpactPoints const& candidates,
                               float* bpm, CPfImpactPoints* out) const {
    out->RemoveAll();
    std::uint32_t const sampleRate = candidates.GetSampleRate();
    auto interval = static_cast<float>(::SamPerMeas(*bpm, sampleRate) >> kPointsPerMeasureShift);
    if (!(interval >= 1.0f)) {
        // No tempo, hence no step to divide by: the onsets stand for the grid.
        *out = candidates;
    } else {
        auto const positions = candidates.Points();
        interval = AverageInterval(interval, {positions.begin(), positions.end()});
        CPfImpactPoints clustered(sampleRate, candidates.GetSampleCount());
        ClusterFilterPoints(&envelope, interval, &candidates, &clustered, &interval);
        *bpm = BpmOfInterval(interval, sampleRate, *bpm);
        *out = clustered;
        InterpolatePoints(interval, out);
        ExtrapolatePoints(interval, candidates.GetSampleCount(), out);
    }
    out->SetResolution(kPointsPerMeasure);
    out->SortAndFilterDupes();
}

float CPfBeatBuilder::CalcPointConfidence(CPfPcmThumbnail const* envelope, std::int64_t position) {
    if (envelope->GetSamplesPerElement() == 0) {
        return 0.0f;
    }
    // Far outside it makes no difference how far.
    std::int64_t const element =
        std::clamp<std::int64_t>(position / envelope->GetSamplesPerElement(), -kConfidenceElements,
                                 envelope->GetCount() + kConfidenceElements);
    float const after = SumElements(*envelope, element, element + kConfidenceElements - 1);
    float const before = SumElements(*envelope, element - kConfidenceElements, element - 1);
    return after - before;
}
