// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FitGrid
//   LayPoints          the engine's grid
//     NumberPoints     how many half beats each point lies after the first; gaps are filled
//     Smooth           the grid without the jitter of its points
//     FitLine          one tempo for all of it, if it comes near
//     CollectRises     what sets in around the half beats of each stretch
//     FindLine         the shift and the turn of the line that meet most of it
//     FindPath         the shifts that do, if each stretch has its own
//   LayEvenly          the even grid that meets most
//   IsBetter           which of the two it is
//   Settle             to the mean of what sets in nearby

#include "song/BeatGridFit.h"

#include "base/EngineRate.h"
#include "song/BandStrokes.h"
#include "song/EvenGrid.h"
#include "song/GridShift.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

namespace {

using Seconds = std::vector<double>;
using Counts = std::vector<std::int64_t>;

constexpr double kLeastStepSeconds = 0.05; // Fixed: half a beat at 600 BPM.
constexpr std::int64_t kSmoothReach = 16;  // Tuned: beat_model; half beats on either side.
constexpr double kJitterSeconds = 0.005;   // Derived: 256 samples, the engine's grain.
constexpr int kLineRounds = 8;             // Tuned: the weights stand after five.
constexpr double kStraightSeconds = 0.025; // Tuned: beat_model; off the line for a steady tempo.
constexpr double kStraightShare = 0.9;     // Tuned: beat_model; of the points.
constexpr double kLineShare = 0.85;        // Tuned: beat_model; of what the path meets.
constexpr double kOtherLineShare = 1.05;   // Tuned: beat_model; what an even grid must meet of what
constexpr double kOtherPathShare = 0.97;   // the engine's does, when that is a line, or a path.
constexpr double kTogetherShare = 0.9;     // Tuned: beat_model; of the engine's half beats that lie
constexpr double kNearSeconds = 0.025;     // so near those of an even grid that both are the same.
constexpr std::int64_t kSettleHops = 14;   // Tuned: beat_model; 10 ms.
constexpr int kSettleRounds = 3;           // Tuned: the fourth moves nothing by 0.1 ms.

double MiddleOf(std::int64_t hop) {
    return (static_cast<double>(hop) + 0.5) / kRiseHopsPerSecond;
}

/// Distance of the middle pair of neighbours by length.
double MiddleGap(std::span<std::int64_t const> points) {
    Counts gaps;
    for (std::size_t i = 1; i < points.size(); ++i) {
        gaps.push_back(points[i] - points[i - 1]);
    }
    auto const middle = gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 2);
    std::nth_element(gaps.begin(), middle, gaps.end());
    return static_cast<double>(*middle) / kEngineRateHz;
}

/// The points in seconds, with evenly laid ones where there is room for more than one step.
Seconds NumberPoints(std::span<std::int64_t const> points, double step) {
    Seconds grid{static_cast<double>(points.front()) / kEngineRateHz};
    for (std::size_t i = 1; i < points.size(); ++i) {
        double const from = static_cast<double>(points[i - 1]) / kEngineRateHz;
        double const gap = static_cast<double>(points[i]) / kEngineRateHz - from;
        std::int64_t const steps = std::max<std::int64_t>(1, RoundToWhole(gap / step));
        for (std::int64_t n = 1; n <= steps; ++n) {
            grid.push_back(from + gap * static_cast<double>(n) / static_cast<double>(steps));
        }
    }
    return grid;
}

struct CLine {
    double m_dMiddle = 0.0; // where it is at `m_dMean`
    double m_dMean = 0.0;
    double m_dSlope = 0.0;

    [[nodiscard]] double At(double x) const { return m_dMiddle + m_dSlope * (x - m_dMean); }
};

/// Sums for the line of least squares through weighted points.
class CRegression {
public:
    void Add(double x, double y, double weight) {
        m_dWeight += weight;
        m_dX += weight * x;
        m_dY += weight * y;
        m_dXX += weight * x * x;
        m_dXY += weight * x * y;
    }

    [[nodiscard]] std::optional<CLine> Solve() const {
        if (!(m_dWeight > 0.0)) {
            return std::nullopt;
        }
        double const x = m_dX / m_dWeight;
        double const y = m_dY / m_dWeight;
        double const spread = m_dXX - m_dX * x;
        return CLine{y, x, spread > 0.0 ? (m_dXY - m_dX * y) / spread : 0.0};
    }

private:
    double m_dWeight = 0.0;
    double m_dX = 0.0;
    double m_dY = 0.0;
    double m_dXX = 0.0;
    double m_dXY = 0.0;
};

/// Each point on the line through those around it, near ones counting more.
Seconds Smooth(Seconds const& grid) {
    auto const count = static_cast<std::int64_t>(grid.size());
    Seconds smooth(grid.size());
    for (std::int64_t i = 0; i < count; ++i) {
        CRegression sums;
        std::int64_t const last = std::min(count - 1, i + kSmoothReach);
        double const from = grid[static_cast<std::size_t>(i)];
        for (std::int64_t j = std::max<std::int64_t>(0, i - kSmoothReach); j <= last; ++j) {
            auto const away = static_cast<double>(j - i);
            sums.Add(away, grid[static_cast<std::size_t>(j)] - from,
                     1.0 - std::abs(away) / static_cast<double>(kSmoothReach + 1));
        }
        smooth[static_cast<std::size_t>(i)] = from + sums.Solve().value_or(CLine{}).At(0.0);
    }
    return smooth;
}

/// The line through most of the points, those far from it counting less from round to round.
CLine FitLine(Seconds const& grid) {
    CLine line;
    for (int round = 0; round < kLineRounds; ++round) {
        CRegression sums;
        for (std::size_t i = 0; i < grid.size(); ++i) {
            auto const x = static_cast<double>(i);
            double const off = (grid[i] - line.At(x)) / kJitterSeconds;
            sums.Add(x, grid[i], round == 0 ? 1.0 : 1.0 / (1.0 + off * off));
        }
        line = sums.Solve().value_or(line);
    }
    return line;
}

bool IsStraight(Seconds const& grid, CLine const& line) {
    std::size_t near = 0;
    for (std::size_t i = 0; i < grid.size(); ++i) {
        near += std::abs(grid[i] - line.At(static_cast<double>(i))) < kStraightSeconds;
    }
    return static_cast<double>(near) >= kStraightShare * static_cast<double>(grid.size());
}

Seconds LaidOut(CLine const& line, std::size_t count) {
    Seconds grid(count);
    for (std::size_t i = 0; i < count; ++i) {
        grid[i] = line.At(static_cast<double>(i));
    }
    return grid;
}

/// Moves the grid by the mean of what sets in around it; a line is turned as well.
void Settle(std::span<std::uint8_t const> rises, bool isLine, Seconds& grid) {
    auto const hops = static_cast<std::int64_t>(rises.size());
    CRegression sums;
    for (std::size_t i = 0; i < grid.size(); ++i) {
        std::int64_t const middle = RiseHopAt(grid[i]);
        std::int64_t const last = std::min(hops - 1, middle + kSettleHops);
        for (std::int64_t hop = std::max<std::int64_t>(0, middle - kSettleHops); hop <= last;
             ++hop) {
            auto const near = static_cast<double>(kSettleHops + 1 - std::abs(hop - middle));
            double const weight = near * static_cast<double>(rises[static_cast<std::size_t>(hop)]);
            sums.Add(static_cast<double>(i), MiddleOf(hop) - grid[i], weight);
        }
    }
    CLine line = sums.Solve().value_or(CLine{});
    line.m_dSlope = isLine ? line.m_dSlope : 0.0;
    for (std::size_t i = 0; i < grid.size(); ++i) {
        grid[i] += line.At(static_cast<double>(i));
    }
}

/// A grid with what it meets.
struct CLaidGrid {
    Seconds m_vSeconds;
    std::int64_t m_nMet = -1;
    bool m_bSteady = false;
};

/// The engine's grid, as a line or along a path.
CLaidGrid LayPoints(std::span<std::int64_t const> points, double step,
                    std::span<std::uint8_t const> rises) {
    Seconds grid = Smooth(NumberPoints(points, step));
    CLine const line = FitLine(grid);
    bool const isStraight = IsStraight(grid, line);
    grid = isStraight ? LaidOut(line, grid.size()) : std::move(grid);
    CShiftTable const table = CollectRises(grid, rises);
    CPathShift const path = FindPath(table);
    CLineShift const straight = isStraight ? FindLine(table) : CLineShift{};
    if (static_cast<double>(straight.m_nMet) >= kLineShare * static_cast<double>(path.m_nMet)) {
        ShiftLine(straight, grid);
        return {std::move(grid), straight.m_nMet, true};
    }
    ShiftAlong(path, grid);
    return {std::move(grid), path.m_nMet, false};
}

/// A grid of one tempo from the start to the end.
CLaidGrid LayEvenly(CEvenGrid const& even, std::span<std::uint8_t const> rises) {
    double const song = static_cast<double>(rises.size()) / kRiseHopsPerSecond;
    auto const count = static_cast<std::size_t>(std::ceil((song - even.m_dFirst) / even.m_dStep));
    Seconds grid = LaidOut({even.m_dFirst, 0.0, even.m_dStep}, count);
    CLineShift const straight = FindLine(CollectRises(grid, rises));
    ShiftLine(straight, grid);
    return {std::move(grid), straight.m_nMet, true};
}

/// Whether the engine's grid lies near half beats of an even one.
bool LieTogether(Seconds const& engines, Seconds const& even) {
    std::size_t near = 0;
    for (double const moment : engines) {
        auto const after = std::ranges::lower_bound(even, moment - kNearSeconds);
        near += after != even.end() && *after < moment + kNearSeconds;
    }
    return static_cast<double>(near) >= kTogetherShare * static_cast<double>(engines.size());
}

/// Those of `grid` from `first` to `last`.
std::span<double const> Between(Seconds const& grid, double first, double last) {
    auto const from = std::ranges::lower_bound(grid, first);
    return {from, std::ranges::upper_bound(from, grid.end(), last)};
}

/// Two grids that lie together are judged by what sets in at all, to the millisecond. If they
/// don't, one of them has slipped or lies between the half beats: then by how much the bands rise
/// where both are, since a drum rises in more of them than what is played between the beats.
bool IsBetter(CLaidGrid const& even, CLaidGrid const& engines, CBandRows const& bands) {
    if (engines.m_vSeconds.size() < 2 || LieTogether(engines.m_vSeconds, even.m_vSeconds)) {
        double const share = engines.m_bSteady ? kOtherLineShare : kOtherPathShare;
        return static_cast<double>(even.m_nMet) > share * static_cast<double>(engines.m_nMet);
    }
    CBandStrokes const strokes(bands);
    double const first = engines.m_vSeconds.front() - kNearSeconds;
    double const last = engines.m_vSeconds.back() + kNearSeconds;
    return strokes.MeanRise(Between(even.m_vSeconds, first, last)) >
           strokes.MeanRise(engines.m_vSeconds);
}

} // namespace

CFittedGrid FitGrid(std::span<std::int64_t const> points, double bpm,
                    std::span<std::uint8_t const> rises, CBandRows const& bands) {
    double const step = points.size() >= 2 ? MiddleGap(points) : bpm > 0.0 ? 30.0 / bpm : 0.0;
    if (!(step >= kLeastStepSeconds)) {
        return {};
    }
    CLaidGrid laid = points.size() >= 2 ? LayPoints(points, step, rises) : CLaidGrid{};
    if (std::optional<CEvenGrid> const even = FindEvenGrid(rises, step)) {
        CLaidGrid other = LayEvenly(*even, rises);
        if (IsBetter(other, laid, bands)) {
            laid = std::move(other);
        }
    }
    Seconds& grid = laid.m_vSeconds;
    if (grid.size() < 2) {
        return {};
    }
    for (int round = 0; round < kSettleRounds; ++round) {
        Settle(rises, laid.m_bSteady, grid);
    }
    double const mean = (grid.back() - grid.front()) / static_cast<double>(grid.size() - 1);
    return mean > kLeastStepSeconds / 2.0 ? CFittedGrid{std::move(grid), mean, laid.m_bSteady}
                                          : CFittedGrid{};
}
