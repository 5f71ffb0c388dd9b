// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FindBeatTimes
//   FitGrid          the grid, laid on the attacks
//   AccentsOf        what sounds at each half beat
//   BeatFeaturesOf   the numbers of each way to count it
//   Judge            the likeliest, and how sure that is
//   Continue         to both ends of the song
//   FlagMarks        the engine's

#include "song/BeatTimes.h"

#include "base/EngineRate.h"
#include "song/AttackRises.h"
#include "song/BeatFeatures.h"
#include "song/BeatGridFit.h"
#include "song/BeatModel.h"
#include "song/PlainMath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

struct CJudgement {
    CBeatReading m_reading;
    float m_fBeats = 0.0f;
    float m_fDownbeats = 0.0f;
};

/// Shares of the readings: the softmax of their weighted numbers.
std::array<float, kBeatReadings> SharesOf(std::span<CBeatAccents const> accents) {
    auto const features = BeatFeaturesOf(accents);
    std::span<float const> const weights = BeatWeights();
    std::array<double, kBeatReadings> sums{};
    for (std::size_t i = 0; i < kBeatReadings; ++i) {
        for (std::size_t j = 0; j < kBeatFeatures; ++j) {
            sums[i] += features[i][j] * static_cast<double>(weights[j]);
        }
    }
    double const highest = *std::max_element(sums.begin(), sums.end());
    std::array<float, kBeatReadings> shares{};
    float total = 0.0f;
    for (std::size_t i = 0; i < kBeatReadings; ++i) {
        shares[i] = PlainExp2(static_cast<float>(sums[i] - highest) * kLog2E);
        total += shares[i];
    }
    for (float& share : shares) {
        share /= total;
    }
    return shares;
}

CJudgement Judge(std::span<CBeatAccents const> accents) {
    auto const readings = ListBeatReadings();
    auto const shares = SharesOf(accents);
    auto const best =
        static_cast<std::size_t>(std::max_element(shares.begin(), shares.end()) - shares.begin());
    CJudgement judgement{readings[best], 0.0f, shares[best]};
    for (std::size_t i = 0; i < readings.size(); ++i) {
        bool const isSameBeat = readings[i].m_nFirst % 2 == readings[best].m_nFirst % 2;
        judgement.m_fBeats += isSameBeat ? shares[i] : 0.0f;
    }
    return judgement;
}

/// Puts the half beats with their places into `times`, and as many before and behind them as the
/// song has room for.
void Continue(CFittedGrid const& grid, CBeatReading reading, double songSeconds,
              CBeatTimes* times) {
    double const step = grid.m_dStepSeconds;
    double const first = grid.m_vSeconds.front();
    double const last = grid.m_vSeconds.back();
    auto const before = static_cast<std::int64_t>(std::max(0.0, std::floor(first / step)));
    auto const count = static_cast<std::int64_t>(grid.m_vSeconds.size());
    auto const phases = static_cast<std::int64_t>(2 * reading.m_nBeats);
    for (std::int64_t i = -before;; ++i) {
        double const seconds = i < 0       ? first + step * static_cast<double>(i)
                               : i < count ? grid.m_vSeconds[static_cast<std::size_t>(i)]
                                           : last + step * static_cast<double>(i - count + 1);
        if (seconds >= songSeconds) {
            break;
        }
        if (seconds >= 0.0) {
            // Never negative: more phases than there are half beats before the first point.
            std::int64_t const turn = (before / phases + 1) * phases;
            std::int64_t const phase =
                (i + turn + phases - static_cast<std::int64_t>(reading.m_nFirst)) % phases;
            auto const place = static_cast<std::uint8_t>(phase % 2 == 0 ? phase / 2 + 1 : 0);
            times->m_vHalfBeats.push_back({seconds, place, false});
        }
    }
}

/// A mark that lies half a step or more from any half beat has none.
void FlagMarks(std::vector<std::int64_t> const& marks, double step,
               std::vector<CBeatTime>* halfBeats) {
    for (std::int64_t const mark : marks) {
        double const seconds = static_cast<double>(mark) / kEngineRateHz;
        auto const nearest = std::ranges::min_element(*halfBeats, {}, [&](CBeatTime const& beat) {
            return std::abs(beat.m_dSeconds - seconds);
        });
        if (nearest != halfBeats->end() && std::abs(nearest->m_dSeconds - seconds) < step / 2.0) {
            nearest->m_bMarked = true;
        }
    }
}

} // namespace

std::vector<double> CBeatTimes::Beats() const {
    std::vector<double> seconds;
    for (CBeatTime const& beat : m_vHalfBeats) {
        if (beat.m_nPlace > 0) {
            seconds.push_back(beat.m_dSeconds);
        }
    }
    return seconds;
}

std::vector<double> CBeatTimes::Downbeats() const {
    std::vector<double> seconds;
    for (CBeatTime const& beat : m_vHalfBeats) {
        if (beat.m_nPlace == 1) {
            seconds.push_back(beat.m_dSeconds);
        }
    }
    return seconds;
}

CBeatTimes FindBeatTimes(CBeatSource const& source) {
    CBeatTimes times;
    std::vector<std::uint8_t> const rises = AttackRises(source.m_curves.m_vAttack);
    CFittedGrid const grid = FitGrid(source.m_vPoints, static_cast<double>(source.m_fBpm), rises,
                                     source.m_curves.m_vBands);
    if (grid.m_vSeconds.empty()) {
        return times;
    }
    CJudgement const judgement = Judge(AccentsOf(source.m_curves, rises, grid.m_vSeconds));
    times.m_nBeatsPerMeasure = static_cast<std::uint8_t>(judgement.m_reading.m_nBeats);
    times.m_bSteady = grid.m_bSteady;
    times.m_fBeatConfidence = judgement.m_fBeats;
    times.m_fDownbeatConfidence = judgement.m_fDownbeats;
    Continue(grid, judgement.m_reading, source.m_dSeconds, &times);
    FlagMarks(source.m_vMarks, grid.m_dStepSeconds, &times.m_vHalfBeats);
    return times;
}
