// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The key of chords and melody, heard from so many seconds of sound in blocks as the engine reads
// it. To be compared with the whole profile in EngineBench.

#include "BenchSignal.h"
#include "song/Harmony.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <span>
#include <vector>

namespace {

constexpr std::size_t kRate = 44100;
constexpr std::size_t kBlock = 4096; // samples

void BM_Harmony(benchmark::State& state) {
    std::vector<float> const pcm = MakeBenchSong(kRate * static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        CHarmonyEar ear;
        for (std::span<float const> rest = pcm; !rest.empty();) {
            std::span<float const> const block = rest.first(std::min(kBlock, rest.size()));
            ear.Add(block);
            rest = rest.subspan(block.size());
        }
        benchmark::DoNotOptimize(ear.Finish());
    }
}
BENCHMARK(BM_Harmony)->Arg(46)->Arg(240)->Unit(benchmark::kMicrosecond);

} // namespace
