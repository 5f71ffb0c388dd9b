// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Steps of BuildBeatMixSprockets:
// 1. AddRange near the first mark, from the start; then near the last, from the end
// 2. AreInOrder: four sprockets, intro before outro
// 3. else BuildBeatMixSprocketsClassic: FindIntroPair, FindOutroPair among onsets
// 4. else AddOuterPair: the intro's end and the outro's start, and a stretch inwards of each

#include "engine/mix/MixParamGen.h"

#include "engine/ProfileResults.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/tempo/ImpactFinder.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr float kRangeLevel = 0.15f;           // Fixed: a range quieter than this is passed over.
constexpr std::uint16_t kOnsetsPerMeasure = 4; // Fixed: resolution of the onset search.
constexpr std::int64_t kLengthTolerance = 200; // Fixed: a pair may be off by 1/200 of its length.
constexpr std::uint16_t kSprocketsWanted = 4;  // Fixed: a pair near either end.

bool IsQuiet(CPfImpactPoints const& grid, CPfPcmThumbnail const& thumbnail, std::int64_t a,
             std::int64_t b) {
    // An average over no distance is infinite or NaN and so never quiet.
    return thumbnail.GetAvgValueBetwImpPts(&grid, static_cast<std::int32_t>(a),
                                           static_cast<std::int32_t>(b)) <
           kRangeLevel * thumbnail.GetMaxRunningMeasAvg();
}

// Deliberate: a range may begin at a negative index, where there is no point; its sprocket then
// lies at 0.
std::uint64_t SprocketAt(CPfImpactPoints const& grid, std::int32_t index) {
    std::int64_t position = 0;
    grid.EnumPoints(index, &position);
    return static_cast<std::uint64_t>(position);
}

void AddPairs(std::pair<std::int64_t, std::int64_t> const& intro,
              std::pair<std::int64_t, std::int64_t> const& outro, CProfileResults* results) {
    results->AddIntroBeatMixSproc(static_cast<std::uint64_t>(intro.first));
    results->AddIntroBeatMixSproc(static_cast<std::uint64_t>(intro.second));
    results->AddOutroBeatMixSproc(static_cast<std::uint64_t>(outro.first));
    results->AddOutroBeatMixSproc(static_cast<std::uint64_t>(outro.second));
}

bool AreInOrder(CProfileResults const& results) {
    std::int64_t position = 0;
    bool isIntro = false;
    if (!results.EnumBeatMixSprocs(kSprocketsWanted - 1, &position, &isIntro)) {
        return false;
    }
    auto const& intro = results.GetIntroSprockets();
    auto const& outro = results.GetOutroSprockets();
    return !intro.IsEmpty() && !outro.IsEmpty() &&
           *std::max_element(intro.begin(), intro.end()) <
               *std::min_element(outro.begin(), outro.end());
}

/// Two positions, the earlier one first.
using CPair = std::optional<std::pair<std::int64_t, std::int64_t>>;

/// First pair of onsets after `introEnd` that lie `length` apart.
CPair FindIntroPair(CPfImpactPoints const& onsets, std::int64_t introEnd, std::int64_t length,
                    std::int64_t tolerance) {
    auto const positions = onsets.Points();
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (positions[i] <= introEnd) {
            continue;
        }
        for (std::size_t j = i + 1; j < positions.size(); ++j) {
            if (positions[j] > positions[i] + length + tolerance) {
                break;
            }
            if (positions[j] > positions[i] + length - tolerance) {
                return std::pair(positions[i], positions[j]);
            }
        }
    }
    return std::nullopt;
}

/// Last pair of onsets before `outroStart` that lie `length` apart.
CPair FindOutroPair(CPfImpactPoints const& onsets, std::int64_t outroStart, std::int64_t length,
                    std::int64_t tolerance) {
    auto const positions = onsets.Points();
    for (std::size_t i = positions.size(); i-- > 0;) {
        if (positions[i] >= outroStart) {
            continue;
        }
        for (std::size_t j = i; j-- > 0;) {
            if (positions[j] < positions[i] - length - tolerance) {
                break;
            }
            if (positions[j] < positions[i] - length + tolerance) {
                return std::pair(positions[j], positions[i]);
            }
        }
    }
    return std::nullopt;
}

/// The intro's end and the outro's start, and where the gap allows a stretch inwards of each.
void AddOuterPair(std::int64_t introEnd, std::int64_t outroStart, std::uint32_t perMeasure,
                  std::uint16_t measures, CProfileResults* results) {
    results->EraseBeatMixSprocs();
    results->AddIntroBeatMixSproc(static_cast<std::uint64_t>(introEnd));
    results->AddOutroBeatMixSproc(static_cast<std::uint64_t>(outroStart));
    std::int64_t const gap = outroStart - introEnd;
    if (gap <= 2 * std::int64_t{perMeasure}) {
        return;
    }
    std::int64_t length = std::uint32_t{measures * perMeasure}; // the product wraps at 32 bits
    for (std::uint16_t halvings = 0; halvings < measures && 2 * length > gap; ++halvings) {
        length /= 2;
    }
    results->AddIntroBeatMixSproc(static_cast<std::uint64_t>(introEnd + length));
    // Deliberate: added after the outro's start though it lies before it, so the pair descends.
    results->AddOutroBeatMixSproc(static_cast<std::uint64_t>(outroStart - length));
}

} // namespace

bool CPfMixParamGen::BuildBeatMixSprockets(CPfPcmThumbnail const* thumbnail,
                                           CPfImpactPoints const* grid, std::uint16_t measures,
                                           CCancelFlag const* cancel, CProfileResults* results) {
    auto const marks = grid->MeasStartMarks();
    if (!marks.empty()) {
        std::int32_t start = 0;
        std::int32_t end = 0;
        if (FindSuitableBeatRange(grid, thumbnail, measures, marks.front(), false, &start, &end)) {
            results->AddIntroBeatMixSproc(SprocketAt(*grid, start));
            results->AddIntroBeatMixSproc(SprocketAt(*grid, end));
        }
        if (FindSuitableBeatRange(grid, thumbnail, measures, marks.back(), true, &start, &end)) {
            results->AddOutroBeatMixSproc(SprocketAt(*grid, start));
            results->AddOutroBeatMixSproc(SprocketAt(*grid, end));
        }
    }
    if (AreInOrder(*results)) {
        return true;
    }
    results->EraseBeatMixSprocs();
    return BuildBeatMixSprocketsClassic(thumbnail, cancel, measures, results);
}

bool CPfMixParamGen::FindSuitableBeatRange(CPfImpactPoints const* grid,
                                           CPfPcmThumbnail const* thumbnail, std::uint16_t measures,
                                           std::int64_t anchor, bool fromEnd, std::int32_t* start,
                                           std::int32_t* end) {
    std::int32_t nearest = 0;
    if (!grid->GetClosestPointIndex(anchor, &nearest)) {
        return false;
    }
    std::int64_t const span = std::int64_t{grid->GetResolution()} * measures;
    std::int64_t const count = std::int64_t{grid->GetUpperBound()} + 1;
    std::int64_t a = nearest;
    std::int64_t b = a + span;
    if (b >= count) {
        b = a;
        a -= span;
    } else if (span > 0 && !fromEnd) {
        std::int64_t const back = a / span * span;
        a -= back;
        b -= back;
        while (IsQuiet(*grid, *thumbnail, a, b)) {
            a += span;
            b += span;
            if (b > count) {
                a -= span;
                b -= span;
                break;
            }
        }
    } else if (span > 0) {
        while (b + span < count) {
            a += span;
            b += span;
        }
        while (IsQuiet(*grid, *thumbnail, a, b)) {
            a -= span;
            b -= span;
            if (a < 0) {
                a += span;
                b += span;
                break;
            }
        }
    }
    *start = static_cast<std::int32_t>(a);
    *end = static_cast<std::int32_t>(b);
    return true;
}

bool CPfMixParamGen::BuildBeatMixSprocketsClassic(CPfPcmThumbnail const* thumbnail,
                                                  CCancelFlag const* cancel, std::uint16_t measures,
                                                  CProfileResults* results) {
    std::int64_t const introEnd = FindIntroEnd(thumbnail);
    std::int64_t const outroStart = std::max(introEnd, FindOutroStart(thumbnail));
    CPfImpactPoints onsets(thumbnail->GetSampleRate(), thumbnail->GetSampleCount());
    CPfImpactFinder const finder(cancel);
    finder.BuildImpactPoints(thumbnail, kOnsetsPerMeasure, &onsets);

    std::uint32_t const perMeasure = thumbnail->SamPerMeas(results->GetBpm());
    std::int64_t const length = std::uint32_t{perMeasure * measures}; // it wraps at 32 bits
    std::int64_t const tolerance = length / kLengthTolerance;
    CPair const intro = FindIntroPair(onsets, introEnd, length, tolerance);
    CPair const outro = FindOutroPair(onsets, outroStart, length, tolerance);
    if (intro && outro && intro->second <= outro->first) {
        AddPairs(*intro, *outro, results);
        return true;
    }
    AddOuterPair(introEnd, outroStart, perMeasure, measures, results);
    return true;
}
