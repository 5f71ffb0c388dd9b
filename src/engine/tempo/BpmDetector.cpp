// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// DetectBaseBpm: nine windows, two divisions each (DetectBpmWindow), median of the results.
// DetectBpmWindow: CollectPositions, then BestBin (histogram of phases) for each candidate tempo.

#include "engine/tempo/BpmDetector.h"

#include "base/EngineRate.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/Tempo.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr float kTempoStepBpm = 0.1f;            // Fixed: step, added up in single precision.
constexpr int kCandidates = 820;                 // Fixed: the last lies near 163.9 BPM.
constexpr std::size_t kMostPositions = 512;      // Fixed: later points of a window don't count.
constexpr std::uint32_t kBins = 40;              // Fixed: bins of a period.
constexpr std::uint32_t kToleranceFraction = 10; // Fixed: a tenth of a period, about four bins.
constexpr int kWindows = 9;                      // Fixed: window k starts at k tenths.
constexpr std::int64_t kWindowSamples =
    std::int64_t{20} * kEngineRateHz;                       // Fixed: 20 s at 44100 Hz, always.
constexpr std::array<std::uint16_t, 2> kDivisions = {4, 8}; // Fixed: periods to the measure.
constexpr float kFastestFoldedBpm = 100.0f;                 // Fixed: above it nothing is doubled.
constexpr float kHalfBeatPercent = 53.0f;                   // Fixed: share of half-beat intervals.

/// start + length, held to the largest position where it would overflow.
std::int64_t EndOfWindow(std::int64_t start, std::int64_t length) {
    if (length <= 0) {
        return start; // nothing lies strictly inside
    }
    std::int64_t const room = std::numeric_limits<std::int64_t>::max() - length;
    return start > room ? std::numeric_limits<std::int64_t>::max() : start + length;
}

/// Low 32 bits of the first points strictly between start and end, in stored order.
std::vector<std::uint32_t> CollectPositions(CPfImpactPoints const& points, std::int64_t start,
                                            std::int64_t end) {
    std::vector<std::uint32_t> kept;
    for (std::int64_t const position : points.Points()) {
        if (start < position && position < end) {
            kept.push_back(static_cast<std::uint32_t>(position));
            if (kept.size() == kMostPositions) {
                break;
            }
        }
    }
    return kept;
}

/// Division of 32-bit numbers by one that stays, as a multiplication: with the reciprocal rounded
/// up to 64 bits the quotient is exact (Granlund and Montgomery, "Division by invariant integers
/// using multiplication", 1994).
class CDivisor {
public:
    explicit CDivisor(std::uint32_t divisor)
        : m_nDivisor(divisor),
          m_nReciprocal(std::numeric_limits<std::uint64_t>::max() / divisor + 1) {}

    [[nodiscard]] std::uint32_t Divide(std::uint32_t n) const {
        if (m_nDivisor == 1) {
            return n; // 2^64 does not fit into the reciprocal
        }
        // The product's upper 64 bits, from the reciprocal's halves: not every processor has 128.
        std::uint64_t const low = (m_nReciprocal & kLowHalf) * n;
        return static_cast<std::uint32_t>(((m_nReciprocal >> 32) * n + (low >> 32)) >> 32);
    }
    [[nodiscard]] std::uint32_t Modulo(std::uint32_t n) const { return n - Divide(n) * m_nDivisor; }

private:
    static constexpr std::uint64_t kLowHalf = 0xFFFF'FFFF;

    std::uint32_t m_nDivisor;
    std::uint64_t m_nReciprocal;
};

/// The same in one multiplication, for numbers below 2^28 that are less than 2^8 times the divisor.
/// Exact: what the reciprocal is too large by, times the number, stays below 2^56.
class CBinDivisor {
public:
    explicit CBinDivisor(std::uint32_t bin)
        : m_nReciprocal((std::uint64_t{1} << kReciprocalBits) / bin + 1) {}

    [[nodiscard]] std::uint32_t Divide(std::uint32_t n) const {
        return static_cast<std::uint32_t>(n * m_nReciprocal >> kReciprocalBits);
    }

private:
    static constexpr unsigned kReciprocalBits = 56;

    std::uint64_t m_nReciprocal;
};

/// Highest count of any bin. A position votes for every bin that starts before its phase by less
/// than the tolerance; nothing wraps around at the end of the period. The bins of one position
/// follow each other, so only the ends of its run are noted and the counts are their running sum.
std::int32_t BestBin(std::vector<std::uint32_t> const& positions, std::uint32_t period,
                     std::uint32_t bin) {
    std::uint32_t const tolerance = period / kToleranceFraction;
    CDivisor const byPeriod(period);
    CBinDivisor const byBin(bin);
    // A period has less than twice as many bins. Runs that begin and that end are counted apart:
    // often many positions have the phase of the one before, whose count would have to be waited
    // for.
    std::array<std::int32_t, 2 * kBins + 2> begins{};
    std::array<std::int32_t, 2 * kBins + 2> ends{};
    for (std::uint32_t const position : positions) {
        std::uint32_t const phase = byPeriod.Modulo(position);
        // The first bin with phase < tolerance + start; the first with start >= phase. As the
        // tolerance is no less than a bin, the one isn't behind the other. No branch: nothing
        // foretells the phases.
        std::uint32_t const isBehind = phase >= tolerance ? ~std::uint32_t{0} : 0;
        ++begins[byBin.Divide((phase - tolerance + bin) & isBehind)];
        ++ends[byBin.Divide(phase + bin - 1)];
    }
    std::int32_t best = 0;
    std::int32_t count = 0;
    for (std::uint32_t j = 0; j < kBins; ++j) {
        count += begins[j] - ends[j];
        best = std::max(best, count);
    }
    return best;
}

} // namespace

float CPfBpmDetector::DetectBpmWindow(CPfImpactPoints const* points, std::int64_t start,
                                      std::int64_t length, std::uint16_t divisions) const {
    std::vector<std::uint32_t> const positions =
        CollectPositions(*points, start, EndOfWindow(start, length));
    if (positions.size() < 2 || divisions == 0) {
        return 0.0f;
    }
    std::int32_t best = 0;
    float bestBpm = 0.0f;
    float bpm = kSlowestTempoBpm; // the first candidate
    for (int candidate = 0; candidate < kCandidates && !IsCancelled(); ++candidate) {
        std::uint32_t const period = points->SamPerMeas(bpm) / divisions;
        std::uint32_t const bin = period / kBins;
        if (bin == 0) {
            break;
        }
        // Deliberate: only a strictly higher count wins, so a tie goes to the slower tempo.
        std::int32_t const count = BestBin(positions, period, bin);
        if (count > best) {
            best = count;
            bestBpm = bpm;
        }
        bpm += kTempoStepBpm;
    }
    return bestBpm;
}

float CPfBpmDetector::DetectBaseBpm(CPfImpactPoints const* points) const {
    std::int64_t const step = points->GetSampleCount() / (kWindows + 1);
    std::vector<float> tempos;
    for (int k = 1; k <= kWindows; ++k) {
        for (std::uint16_t const divisions : kDivisions) {
            float const bpm = DetectBpmWindow(points, step * k, kWindowSamples, divisions);
            if (bpm != 0.0f) {
                tempos.push_back(bpm);
            }
        }
        if (IsCancelled()) {
            return 0.0f;
        }
    }
    return UpperMedian(std::move(tempos));
}

float CPfBpmDetector::UpperMedian(std::vector<float> tempos) {
    if (tempos.empty()) {
        return 0.0f;
    }
    auto const median = tempos.begin() + static_cast<std::ptrdiff_t>(tempos.size() / 2);
    std::nth_element(tempos.begin(), median, tempos.end());
    return *median;
}

float CPfBpmDetector::FoldUpBpm(CPfImpactPoints const* points, float bpm) {
    if (bpm > kFastestFoldedBpm) {
        return bpm;
    }
    std::uint32_t const halfBeat = points->SamPerMeas(bpm) / 8;
    std::uint32_t const tolerance = halfBeat / 5;
    auto const positions = points->Points();
    std::int32_t halfBeats = 0;
    for (std::size_t i = 1; i < positions.size(); ++i) {
        std::uint32_t const interval =
            static_cast<std::uint32_t>(positions[i]) - static_cast<std::uint32_t>(positions[i - 1]);
        if (halfBeat - tolerance < interval && interval < halfBeat + tolerance) {
            ++halfBeats;
        }
    }
    std::int32_t const intervals = points->GetUpperBound();
    if (intervals < 1) {
        return bpm;
    }
    // Deliberate: 53 of 100 comes to 52.9999962 in single precision and does not double.
    float const percent = static_cast<float>(halfBeats) / static_cast<float>(intervals) * 100.0f;
    return percent > kHalfBeatPercent ? bpm + bpm : bpm;
}
