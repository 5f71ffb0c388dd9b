// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Measures on the beat grid, and the accent pattern of one measure.
// BuildMeasStartMarks: CountVotes (attacks vote for a phase), PhaseEnergies (each phase's share),
//   the phase with the best product is the downbeat.
// BuildExtMeasStartMarks: WalkForwards, WalkBackwards (where the grid breaks), first, last measure.
// BuildBeatPattern: PhaseEnergies, turned so that the downbeat comes first.

#include "engine/beats/BeatBuilder.h"
#include "engine/beats/EvenRun.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <span>

namespace {

constexpr float kAttackLevel = 0.4f;        // Fixed: rise over the base, in running averages.
constexpr float kAttackRatio = 2.0f;        // Fixed: rise over the base, in bases.
constexpr std::uint32_t kLeadFraction = 32; // Fixed: the test runs 1/32 measure ahead.

/// Loudest element of each grid interval, added up per phase and stretched to 0..1. `turn` is
/// added to the phase of every interval. Only the points of whole measures take part.
std::vector<double> PhaseEnergies(CPfPcmThumbnail const& envelope, CPfImpactPoints const& points,
                                  std::size_t turn) {
    std::size_t const resolution = points.GetResolution();
    std::vector<double> energies(resolution, 0.0);
    auto const positions = points.Points();
    std::size_t const count = positions.size() / resolution * resolution;
    auto const element = [&](std::size_t j) {
        std::int64_t const whole = positions[j] / envelope.GetSamplesPerElement();
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(whole, std::numeric_limits<std::int32_t>::min(),
                                     std::numeric_limits<std::int32_t>::max()));
    };
    for (std::size_t j = 1; j < count; ++j) {
        energies[(turn + j - 1) % resolution] +=
            static_cast<double>(envelope.GetMaxRangeValue(element(j - 1), element(j)));
    }
    double lowest = energies[0];
    double highest = 0.0;
    for (double const energy : energies) {
        lowest = std::min(lowest, energy);
        highest = std::max(highest, energy);
    }
    double const range = highest - lowest == 0.0 ? 1.0 : highest - lowest;
    for (double& energy : energies) {
        energy = (energy - lowest) / range;
    }
    return energies;
}

/// The largest of the last elements of a walk, each looked at once: only those can still become the
/// largest that no later one has passed.
class CSlidingMaximum {
public:
    CSlidingMaximum(CPfPcmThumbnail const& thumbnail, std::int64_t reach)
        : m_pThumbnail(&thumbnail),
          m_elements(thumbnail.Elements()),
          m_nReach(reach),
          m_bOrdered(std::ranges::none_of(m_elements, [](float x) { return std::isnan(x); })) {}

    /// The largest of elements max(0, last - reach)..last. `last` must not fall from call to call.
    float UpTo(std::int64_t last) {
        if (!m_bOrdered) {
            return m_pThumbnail->GetMaxRangeValue(
                static_cast<std::int32_t>(std::max<std::int64_t>(0, last - m_nReach)),
                static_cast<std::int32_t>(last));
        }
        for (; m_nNext <= last; ++m_nNext) {
            while (!m_vCandidates.empty() && At(m_vCandidates.back()) <= At(m_nNext)) {
                m_vCandidates.pop_back();
            }
            m_vCandidates.push_back(m_nNext);
        }
        while (m_vCandidates.front() < last - m_nReach) {
            m_vCandidates.pop_front();
        }
        return At(m_vCandidates.front());
    }

private:
    [[nodiscard]] float At(std::int64_t i) const { return m_elements[static_cast<std::size_t>(i)]; }

    CPfPcmThumbnail const* m_pThumbnail;
    std::span<float const> m_elements;
    std::int64_t m_nReach;
    bool m_bOrdered; // no NaN among the elements, which has no place in an order
    std::int64_t m_nNext = 0;
    std::deque<std::int64_t> m_vCandidates;
};

/// How many attacks fall nearest to a grid point of each phase. After an attack half a measure
/// passes before the next can count.
std::vector<std::int32_t> CountVotes(CPfPcmThumbnail const& attacks,
                                     CPfImpactPoints const& points) {
    std::vector<std::int32_t> votes(points.GetResolution(), 0);
    auto const perMeasure = static_cast<std::int64_t>(attacks.GetElePerMeas(0.0f));
    std::int64_t const half = perMeasure / 2;
    std::int64_t const lead = perMeasure / kLeadFraction;
    float const level = kAttackLevel * attacks.GetMaxRunningMeasAvg();
    CSlidingMaximum loudest(attacks, half);
    for (std::int64_t i = 0; i < attacks.GetCount(); ++i) {
        std::int64_t const behind = i - lead;
        float const value = attacks.GetAt(static_cast<std::int32_t>(i));
        float const base = behind < 1 ? 0.0f : loudest.UpTo(behind);
        if (!(value - base > level && value - base > kAttackRatio * base)) {
            continue;
        }
        std::int32_t nearest = 0;
        if (points.GetClosestPointIndex((behind + lead / 2) * attacks.GetSamplesPerElement(),
                                        &nearest)) {
            ++votes[static_cast<std::size_t>(nearest) % votes.size()];
        }
        i += half;
    }
    return votes;
}

std::size_t BestPhase(std::vector<std::int32_t> const& votes) {
    // max_element gives the first of equals.
    return static_cast<std::size_t>(std::max_element(votes.begin(), votes.end()) - votes.begin());
}

std::size_t WeighPhases(std::vector<std::int32_t> const& votes,
                        std::vector<double> const& energies) {
    std::size_t best = BestPhase(votes);
    double bestScore = 0.0;
    for (std::size_t k = 0; k < votes.size(); ++k) {
        double const score = static_cast<double>(votes[k]) * energies[k];
        if (score > bestScore) {
            bestScore = score;
            best = k;
        }
    }
    return best;
}

/// Index of the point closest to `mark`, 0 when there is none.
std::int32_t ClosestOrFirst(CPfImpactPoints const& points, std::int64_t mark) {
    std::int32_t index = 0;
    points.GetClosestPointIndex(mark, &index);
    return index;
}

std::int64_t PointAt(CPfImpactPoints const& points, std::int32_t i) {
    std::int64_t position = 0;
    points.EnumPoints(i, &position);
    return position;
}

/// Up to the next mark, or to the end after the last one: a mark wherever a run of at least one
/// whole even measure breaks.
void WalkForwards(CPfImpactPoints const& points, CVectorArray<std::int64_t>* marks) {
    std::int32_t const measure = points.GetResolution();
    std::int64_t mark = 0;
    for (std::int32_t k = 0; points.EnumMeasStartMarks(k, &mark); ++k) {
        std::int32_t anchor = 0;
        if (!points.GetClosestPointIndex(mark, &anchor)) {
            continue;
        }
        std::int32_t limit = points.GetUpperBound();
        if (points.EnumMeasStartMarks(k + 1, &mark)) {
            points.GetClosestPointIndex(mark, &limit);
        }
        CPfEvenRun run(points, anchor);
        for (std::int32_t current = anchor; current + measure <= limit; current += measure) {
            if (run.ReachesTo(current + measure)) {
                continue;
            }
            if (anchor < current) {
                marks->Add(PointAt(points, current));
            }
            anchor = current + measure;
            run = CPfEvenRun(points, anchor);
        }
    }
}

// Deliberate: unlike the walk forwards, a break marks even in the first measure walked.
void WalkBackwards(CPfImpactPoints const& points, CVectorArray<std::int64_t>* marks) {
    std::int32_t const measure = points.GetResolution();
    std::int64_t mark = 0;
    std::int32_t anchor = 0;
    if (!points.EnumMeasStartMarks(0, &mark) || !points.GetClosestPointIndex(mark, &anchor)) {
        return;
    }
    std::int32_t previous = anchor;
    CPfEvenRun run(points, anchor);
    for (std::int32_t i = anchor - measure; i >= 0; i -= measure) {
        if (!run.ReachesTo(i)) {
            run = CPfEvenRun(points, i);
            marks->Add(PointAt(points, previous));
        }
        previous = i;
    }
}

void MarkFirstMeasure(CPfImpactPoints* points) {
    std::int64_t mark = 0;
    if (!points->EnumMeasStartMarks(0, &mark)) {
        return;
    }
    std::int32_t const nearest = ClosestOrFirst(*points, mark);
    std::int32_t const first = nearest % points->GetResolution();
    if (nearest != first) {
        points->AddMeasStartMark(PointAt(*points, first));
        points->Sort();
    }
}

void MarkLastMeasure(CPfImpactPoints* points) {
    auto const marks = points->MeasStartMarks();
    std::int32_t const nearest = ClosestOrFirst(*points, marks.empty() ? 0 : marks.back());
    std::int32_t const rest = points->GetUpperBound() - nearest;
    std::int32_t const measure = points->GetResolution();
    std::int32_t const last = nearest + measure * (rest / measure);
    if (rest > 0 && last != nearest) {
        points->AddMeasStartMark(PointAt(*points, last));
    }
}

} // namespace

bool CPfBeatBuilder::BuildMeasStartMarks(CPfPcmThumbnail const* envelope,
                                         CPfPcmThumbnail const* attacks, CPfImpactPoints* points) {
    if (points->GetResolution() == 0) {
        return false;
    }
    std::vector<std::int32_t> const votes = CountVotes(*attacks, *points);
    std::size_t const best = envelope->GetSamplesPerElement() == 0
                                 ? BestPhase(votes)
                                 : WeighPhases(votes, PhaseEnergies(*envelope, *points, 0));
    std::int64_t position = 0;
    if (points->EnumPoints(static_cast<std::int32_t>(best), &position)) {
        points->AddMeasStartMark(position);
    }
    return true;
}

bool CPfBeatBuilder::BuildExtMeasStartMarks(CPfImpactPoints* points) {
    if (points->GetResolution() == 0) {
        return false;
    }
    CVectorArray<std::int64_t> marks;
    WalkForwards(*points, &marks);
    WalkBackwards(*points, &marks);
    for (std::int64_t const mark : marks) {
        points->AddMeasStartMark(mark);
    }
    points->Sort();
    MarkFirstMeasure(points);
    MarkLastMeasure(points);
    return true;
}

bool CPfBeatBuilder::BuildBeatPattern(CPfPcmThumbnail const* envelope,
                                      CPfImpactPoints const* points, CPfBeatPattern* pattern) {
    std::int32_t const resolution = points->GetResolution();
    if (resolution == 0) {
        return false;
    }
    pattern->Initialize(resolution);
    if (envelope->GetSamplesPerElement() == 0) {
        return true;
    }
    std::int64_t mark = 0;
    points->EnumMeasStartMarks(0, &mark);
    std::int32_t const turn = resolution - ClosestOrFirst(*points, mark) % resolution;
    std::vector<double> const energies =
        PhaseEnergies(*envelope, *points, static_cast<std::size_t>(turn));
    for (std::int32_t k = 0; k < resolution; ++k) {
        pattern->SetBeatWeight(k, static_cast<float>(energies[static_cast<std::size_t>(k)]));
    }
    return true;
}

bool CPfBeatBuilder::IsRangeLinear(CPfImpactPoints const* points, std::int32_t i, std::int32_t j) {
    return ::IsRangeLinear(*points, i, j);
}
