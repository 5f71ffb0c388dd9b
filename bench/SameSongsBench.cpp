// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Copies found among so many made openings: strokes on a grid of sixteenths, at tempos of dance
// music, in twelve keys; every tenth song is there twice.

#include "song/SameSongs.h"
#include "support/Strokes.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kElements = 4096;

std::vector<std::uint8_t> MakeOpening(std::uint32_t seed) {
    return LevelsFrom(MachineStrokesOf(seed, kElements, 118.0 + seed % 15));
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
        std::minstd_rand draw(static_cast<std::uint32_t>(i % 10 == 9 ? i - 5 : i) + 1);
        auto const below = [&draw](std::uint32_t n) {
            return static_cast<std::uint32_t>(draw()) % n;
        };
        songs[i].m_opening = openings[i];
        songs[i].m_dSeconds = 180.0 + below(240);
        songs[i].m_dOutroSeconds = songs[i].m_dSeconds - below(30);
        songs[i].m_eMode = EKeyMode::Minor;
        songs[i].m_nTonic = static_cast<std::int32_t>(below(12));
    }
    std::size_t groups = 0;
    for (auto _ : state) {
        groups = FindSameSongs(songs, [](std::size_t a, std::size_t b) { return a < b; }).size();
    }
    state.counters["groups"] = static_cast<double>(groups);
}
BENCHMARK(BM_SameSongs)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
