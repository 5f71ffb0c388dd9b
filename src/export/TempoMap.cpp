// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A step begins on a beat and goes on as long as there is one length of a beat at which every beat
// so far lies near enough.

#include "export/TempoMap.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr double kMinuteSeconds = 60.0;

/// The tempo, a multiple of `leastBpm`, nearest to the middle of those whose beats last from
/// `shortest` to `longest` seconds; nothing when there is none among them.
std::optional<double> TempoBetween(double shortest, double longest, double leastBpm) {
    if (!(shortest > 0.0) || longest < shortest) {
        return std::nullopt;
    }
    double const middle = kMinuteSeconds / ((shortest + longest) / 2.0);
    if (!(leastBpm > 0.0)) {
        return middle;
    }
    double const tempo = std::round(middle / leastBpm) * leastBpm;
    bool const isInside =
        tempo > 0.0 && tempo >= kMinuteSeconds / longest && tempo <= kMinuteSeconds / shortest;
    return isInside ? std::optional(tempo) : std::nullopt;
}

} // namespace

std::vector<CBeatTime> WholeBeats(CBeatTimes const& beats) {
    std::vector<CBeatTime> whole;
    std::ranges::copy_if(beats.m_vHalfBeats, std::back_inserter(whole),
                         [](CBeatTime const& beat) { return beat.m_nPlace > 0; });
    return whole;
}

std::vector<CTempoStep> MakeTempoMap(std::vector<CBeatTime> const& beats, double toleranceSeconds,
                                     double leastBpm) {
    std::vector<CTempoStep> steps;
    std::size_t first = 0;
    while (first + 1 < beats.size()) {
        double const start = beats[first].m_dSeconds;
        double shortest = 0.0;
        double longest = beats[first + 1].m_dSeconds - start + toleranceSeconds;
        // Two beats have a tempo, whatever it is rounded to.
        double tempo = kMinuteSeconds / (beats[first + 1].m_dSeconds - start);
        std::size_t last = first + 1;
        for (std::size_t next = first + 1; next < beats.size(); ++next) {
            auto const count = static_cast<double>(next - first);
            double const whole = beats[next].m_dSeconds - start;
            shortest = std::max(shortest, (whole - toleranceSeconds) / count);
            longest = std::min(longest, (whole + toleranceSeconds) / count);
            std::optional<double> const fitting = TempoBetween(shortest, longest, leastBpm);
            if (!fitting) {
                break;
            }
            tempo = *fitting;
            last = next;
        }
        if (!(tempo > 0.0) || !std::isfinite(tempo)) {
            return {};
        }
        steps.push_back({first, start, tempo, beats[first].m_nPlace});
        first = last;
    }
    return steps;
}
