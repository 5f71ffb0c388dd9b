// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/GridShift.h"

#include <algorithm>
#include <cstddef>

namespace {

using Counts = std::vector<std::int64_t>;

constexpr std::int64_t kBlurHops = 6;      // Tuned: beat_model; 4 ms.
constexpr std::int64_t kStretchHops = 24;  // Fixed: 17 ms at the ends of the song.
constexpr std::size_t kStretchPoints = 16; // Tuned: beat_model; half beats, two measures.
constexpr std::int64_t kPathHops = 2;      // Fixed: 1.5 ms from stretch to stretch.

/// The rises blurred by a triangle, so that players who aren't quite together count together.
Counts Blur(std::span<std::uint8_t const> rises) {
    auto const count = static_cast<std::int64_t>(rises.size());
    Counts out(rises.size(), 0);
    for (std::int64_t i = 0; i < count; ++i) {
        std::int64_t const last = std::min(count - 1, i + kBlurHops - 1);
        std::int64_t sum = 0;
        for (std::int64_t j = std::max<std::int64_t>(0, i - kBlurHops + 1); j <= last; ++j) {
            sum += (kBlurHops - std::abs(j - i)) * rises[static_cast<std::size_t>(j)];
        }
        out[static_cast<std::size_t>(i)] = sum;
    }
    return out;
}

/// How far a line that turns by `turn` steps at the ends lies off at `place` of `count`.
double TurnAt(std::int64_t turn, std::size_t place, std::size_t count) {
    auto const part = (static_cast<double>(place) + 0.5) / static_cast<double>(count);
    return static_cast<double>(turn) * (2.0 * part - 1.0);
}

std::int64_t Met(CShiftTable const& table, CLineShift const& line) {
    std::int64_t met = 0;
    for (std::size_t i = 0; i < table.size(); ++i) {
        std::int64_t const turned = RoundToWhole(TurnAt(line.m_nTurn, i, table.size()));
        met += table[i][static_cast<std::size_t>(kShiftHops + line.m_nShift + turned)];
    }
    return met;
}

} // namespace

CShiftTable CollectRises(std::span<double const> grid, std::span<std::uint8_t const> rises) {
    Counts const blurred = Blur(rises);
    auto const hops = static_cast<std::int64_t>(blurred.size());
    CShiftTable table(std::max<std::size_t>(1, grid.size() / kStretchPoints));
    for (std::size_t i = 0; i < grid.size(); ++i) {
        auto& sums = table[std::min(table.size() - 1, i / kStretchPoints)];
        std::int64_t const first = RiseHopAt(grid[i]) - kShiftHops;
        if (first < 0 || first + static_cast<std::int64_t>(kShifts) > hops) {
            continue;
        }
        for (std::size_t shift = 0; shift < kShifts; ++shift) {
            sums[shift] += blurred[static_cast<std::size_t>(first) + shift];
        }
    }
    return table;
}

CLineShift FindLine(CShiftTable const& table) {
    constexpr std::int64_t kReachHops = kShiftHops - kStretchHops;
    CLineShift best{0, 0, Met(table, {})}; // which wins a tie
    for (std::int64_t turn = -kStretchHops; turn <= kStretchHops; ++turn) {
        for (std::int64_t shift = -kReachHops; shift <= kReachHops; ++shift) {
            std::int64_t const met = Met(table, {shift, turn});
            best = met > best.m_nMet ? CLineShift{shift, turn, met} : best;
        }
    }
    return best;
}

CPathShift FindPath(CShiftTable const& table) {
    std::array<std::int64_t, kShifts> sums = table.front();
    std::vector<std::array<std::uint8_t, kShifts>> origins;
    for (std::size_t i = 1; i < table.size(); ++i) {
        std::array<std::int64_t, kShifts> next{};
        auto& origin = origins.emplace_back();
        for (std::int64_t shift = 0; shift < static_cast<std::int64_t>(kShifts); ++shift) {
            auto const here = static_cast<std::size_t>(shift);
            std::size_t best = here; // which wins a tie
            std::int64_t const last = std::min<std::int64_t>(kShifts - 1, shift + kPathHops);
            for (auto j = std::max<std::int64_t>(0, shift - kPathHops); j <= last; ++j) {
                auto const from = static_cast<std::size_t>(j);
                best = sums[from] > sums[best] ? from : best;
            }
            next[here] = sums[best] + table[i][here];
            origin[here] = static_cast<std::uint8_t>(best);
        }
        sums = next;
    }
    auto const top =
        static_cast<std::size_t>(std::max_element(sums.begin(), sums.end()) - sums.begin());
    std::size_t place = sums[top] > sums[kShiftHops] ? top : static_cast<std::size_t>(kShiftHops);
    CPathShift path{{}, sums[place]};
    for (std::size_t i = table.size(); i-- > 0;) {
        path.m_vShifts.push_back(static_cast<double>(place) - static_cast<double>(kShiftHops));
        place = i > 0 ? origins[i - 1][place] : place;
    }
    std::ranges::reverse(path.m_vShifts);
    return path;
}

void ShiftLine(CLineShift const& line, std::vector<double>& grid) {
    for (std::size_t i = 0; i < grid.size(); ++i) {
        double const turned = TurnAt(line.m_nTurn, i, grid.size());
        grid[i] += (static_cast<double>(line.m_nShift) + turned) / kRiseHopsPerSecond;
    }
}

void ShiftAlong(CPathShift const& path, std::vector<double>& grid) {
    auto const last = static_cast<double>(path.m_vShifts.size() - 1);
    for (std::size_t i = 0; i < grid.size(); ++i) {
        double const place =
            (static_cast<double>(i) + 0.5) / static_cast<double>(kStretchPoints) - 0.5;
        double const held = std::clamp(place, 0.0, last);
        auto const before = static_cast<std::size_t>(held);
        std::size_t const after = std::min(before + 1, path.m_vShifts.size() - 1);
        double const part = held - static_cast<double>(before);
        double const hops = (1.0 - part) * path.m_vShifts[before] + part * path.m_vShifts[after];
        grid[i] += hops / kRiseHopsPerSecond;
    }
}
