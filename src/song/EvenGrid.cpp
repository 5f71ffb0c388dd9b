// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FindEvenGrid
//   Thin           the rises in steps of 2.9 ms, where there are any
//   FirstSteps     steps to try on the middle minute
//   TryAll         folds the rises at each step, keeps the best
//   NextSteps      what to try on twice the length, around those

#include "song/EvenGrid.h"

#include "base/EngineRate.h"
#include "song/BeatListener.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr std::size_t kThinning = 4; // Fixed: 2.9 ms, half of what players differ by.
constexpr double kBinSeconds = static_cast<double>(kThinning * kAttackHopSamples) / kEngineRateHz;
constexpr double kFirstSeconds = 60.0;  // Tuned: beat_model; the length that is searched in full.
constexpr double kMostSeconds = 900.0;  // Fixed: the search takes as long as the song.
constexpr double kLeastSteps = 16.0;    // Fixed: two measures.
constexpr double kReach = 0.02;         // Tuned: beat_model; how far off the engine's tempo may be.
constexpr double kDriftSeconds = 0.006; // Tuned: beat_model; between two steps, over the length.
constexpr std::size_t kKept = 16;       // Tuned: beat_model; steps that are tried on.

struct CRise {
    double m_dSeconds = 0.0;
    std::int64_t m_nHeight = 0;
};

/// A step, and the phase at which it meets most.
struct CTrial {
    double m_dStep = 0.0;
    double m_dPhase = 0.0; // seconds from a half beat to the next, below the step
    std::int64_t m_nMet = 0;
};

std::vector<CRise> Thin(std::span<std::uint8_t const> rises) {
    std::vector<CRise> thinned;
    for (std::size_t i = 0; i < rises.size(); i += kThinning) {
        std::int64_t height = 0;
        for (std::uint8_t const rise : rises.subspan(i, std::min(kThinning, rises.size() - i))) {
            height += rise;
        }
        if (height > 0) {
            std::size_t const bin = i / kThinning;
            thinned.push_back({(static_cast<double>(bin) + 0.5) * kBinSeconds, height});
        }
    }
    return thinned;
}

/// Folds the rises at `step` and finds the phase that meets most of them.
CTrial Fold(std::span<CRise const> rises, double step, std::vector<std::int64_t>& bins) {
    auto const count = static_cast<std::size_t>(std::max(4.0, std::floor(step / kBinSeconds)));
    bins.assign(count, 0);
    for (CRise const& rise : rises) {
        double const turns = rise.m_dSeconds / step;
        double const phase = turns - std::floor(turns);
        auto const bin = static_cast<std::size_t>(phase * static_cast<double>(count));
        bins[std::min(bin, count - 1)] += rise.m_nHeight;
    }
    CTrial trial{step, 0.0, -1};
    for (std::size_t i = 0; i < count; ++i) {
        std::int64_t const met =
            bins[(i + count - 1) % count] + 2 * bins[i] + bins[(i + 1) % count];
        if (met > trial.m_nMet) {
            trial.m_nMet = met;
            trial.m_dPhase = (static_cast<double>(i) + 0.5) / static_cast<double>(count) * step;
        }
    }
    return trial;
}

/// Those rises that lie in the middle `seconds` of the song.
std::span<CRise const> Middle(std::vector<CRise> const& rises, double songSeconds, double seconds) {
    auto const earlier = [](CRise const& rise, double moment) { return rise.m_dSeconds < moment; };
    double const from = std::max(0.0, (songSeconds - seconds) / 2.0);
    auto const first = std::lower_bound(rises.begin(), rises.end(), from, earlier);
    auto const end = std::lower_bound(first, rises.end(), from + seconds, earlier);
    return {first, end};
}

/// The trials that meet most, at most `kKept`, the best first.
std::vector<CTrial> TryAll(std::span<CRise const> rises, std::vector<double> const& steps) {
    std::vector<std::int64_t> bins;
    std::vector<CTrial> trials;
    trials.reserve(steps.size());
    for (double const step : steps) {
        trials.push_back(Fold(rises, step, bins));
    }
    std::stable_sort(trials.begin(), trials.end(),
                     [](CTrial const& a, CTrial const& b) { return a.m_nMet > b.m_nMet; });
    trials.resize(std::min(trials.size(), kKept));
    return trials;
}

/// Distance of two steps that drift apart by `kDriftSeconds` within `seconds`.
double Spacing(double step, double seconds) {
    return kDriftSeconds * step / seconds;
}

std::vector<double> FirstSteps(double step, double seconds) {
    double const spacing = Spacing(step, seconds);
    auto const count = static_cast<std::int64_t>(kReach * step / spacing);
    std::vector<double> steps;
    for (std::int64_t i = -count; i <= count; ++i) {
        steps.push_back(step + spacing * static_cast<double>(i));
    }
    return steps;
}

std::vector<double> NextSteps(std::vector<CTrial> const& trials, double seconds) {
    std::vector<double> steps;
    for (CTrial const& trial : trials) {
        for (int i = -2; i <= 2; ++i) {
            steps.push_back(trial.m_dStep + Spacing(trial.m_dStep, seconds) * i);
        }
    }
    return steps;
}

} // namespace

std::optional<CEvenGrid> FindEvenGrid(std::span<std::uint8_t const> rises, double step) {
    std::vector<CRise> const thinned = Thin(rises);
    std::size_t const bins = rises.size() / kThinning;
    double const song = static_cast<double>(bins) * kBinSeconds;
    if (thinned.empty() || !(step > 0.0) || song < kLeastSteps * step || song > kMostSeconds) {
        return std::nullopt;
    }
    double seconds = std::min(song, kFirstSeconds);
    std::vector<CTrial> trials = TryAll(Middle(thinned, song, seconds), FirstSteps(step, seconds));
    while (seconds < song) {
        seconds = std::min(song, 2.0 * seconds);
        trials = TryAll(Middle(thinned, song, seconds), NextSteps(trials, seconds));
    }
    return CEvenGrid{trials.front().m_dPhase, trials.front().m_dStep};
}
