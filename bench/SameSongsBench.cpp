// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Copies found among so many made openings: strokes on a grid of sixteenths, at tempos of dance
// music, in twelve keys; every tenth song is there twice.

#include "song/SameSongs.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t kElements = 4096;
constexpr double kElementsASecond = 44100.0 / 256.0;

class CDraw {
public:
    explicit CDraw(std::uint32_t seed) : m_nState(seed * 2654435761U + 1) {}
    double operator()() {
        m_nState = m_nState * 1664525U + 1013904223U;
        return static_cast<double>(m_nState >> 8U) / 16777216.0;
    }

private:
    std::uint32_t m_nState;
};

std::vector<std::uint8_t> MakeOpening(std::uint32_t seed) {
    CDraw draw(seed);
    double const step = kElementsASecond * 15.0 / std::round(118.0 + 14.0 * draw());
    std::vector<double> envelope(kElements, 1.0);
    for (std::size_t i = 0; static_cast<double>(i) * step < double{kElements}; ++i) {
        double const height = i % 4 == 0 ? 150.0 : draw() < 0.4 ? 100.0 * draw() : 0.0;
        auto const start = static_cast<std::size_t>(static_cast<double>(i) * step);
        for (std::size_t k = start; k < std::min(start + 100, kElements) && height > 0.0; ++k) {
            envelope[k] += height * std::exp2(-static_cast<double>(k - start) / 12.0);
        }
    }
    double const top = *std::ranges::max_element(envelope);
    std::vector<std::uint8_t> levels;
    for (double const value : envelope) {
        levels.push_back(static_cast<std::uint8_t>(value / top * 255.0 + 0.5));
    }
    return levels;
}

void BM_SameSongs(benchmark::State& state) {
    auto const count = static_cast<std::size_t>(state.range(0));
    std::vector<std::vector<std::uint8_t>> openings;
    std::vector<CSongMarks> songs(count);
    for (std::size_t i = 0; i < count; ++i) {
        bool const isCopy = i % 10 == 9;
        openings.push_back(isCopy ? openings[i - 5] : MakeOpening(static_cast<std::uint32_t>(i)));
    }
    for (std::size_t i = 0; i < count; ++i) {
        CDraw draw(static_cast<std::uint32_t>(i % 10 == 9 ? i - 5 : i));
        songs[i].m_opening = openings[i];
        songs[i].m_dSeconds = 180.0 + 240.0 * draw();
        songs[i].m_dOutroSeconds = songs[i].m_dSeconds - 30.0 * draw();
        songs[i].m_eMode = EKeyMode::Minor;
        songs[i].m_nTonic = static_cast<std::int32_t>(12.0 * draw());
    }
    std::size_t groups = 0;
    for (auto _ : state) {
        groups = FindSameSongs(songs, [](std::size_t a, std::size_t b) { return a < b; }).size();
    }
    state.counters["groups"] = static_cast<double>(groups);
}
BENCHMARK(BM_SameSongs)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
