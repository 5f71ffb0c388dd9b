// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The whole engine, from samples to profile: four minutes of ordinary and of bass-heavy sound, with
// and without digital silence, and two hours with an onset every 29 ms. `realtime` is how many
// seconds of sound a second of CPU is through with. An argument of 1 forces the plain loops.

#include "BenchKernels.h"
#include "BenchSignal.h"
#include "song/SongProfile.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t kRate = 44100;
constexpr std::size_t kSongSamples = kRate * 240;
constexpr std::size_t kTwoHours = kRate * 7200;
constexpr std::size_t kDenseSpacing = 1280; // samples: five elements, the densest that is found

void RunEngine(benchmark::State& state, std::vector<float> const& pcm) {
    CBenchKernels const kernels(state);
    float bpm = 0.0f;
    for (auto _ : state) {
        bpm = ProfileSamples(pcm, {}).m_results.GetBpm();
        benchmark::DoNotOptimize(bpm);
    }
    double const seconds = static_cast<double>(pcm.size()) / static_cast<double>(kRate);
    state.counters["bpm"] = static_cast<double>(bpm);
    state.counters["realtime"] = benchmark::Counter(
        seconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_EngineSong(benchmark::State& state) {
    RunEngine(state, MakeBenchSong(kSongSamples));
}
BENCHMARK(BM_EngineSong)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

void BM_EngineBass(benchmark::State& state) {
    RunEngine(state, MakeBenchBassLine(kSongSamples));
}
BENCHMARK(BM_EngineBass)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

/// Half a second of music, then digital silence.
void BM_EngineSilence(benchmark::State& state) {
    std::vector<float> pcm = MakeBenchSong(kSongSamples);
    std::fill(pcm.begin() + kRate / 2, pcm.end(), 0.0f);
    RunEngine(state, pcm);
}
BENCHMARK(BM_EngineSilence)->Arg(0)->Unit(benchmark::kMillisecond);

/// A click of 4 ms every 0.47 s, digital silence between them.
void BM_EngineClicks(benchmark::State& state) {
    std::vector<float> pcm(kSongSamples);
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        pcm[i] = i % 20672 < 176 ? 0.9f : 0.0f;
    }
    RunEngine(state, pcm);
}
BENCHMARK(BM_EngineClicks)->Arg(0)->Unit(benchmark::kMillisecond);

/// Two hours in which a burst of noise begins every 1280 samples and dies away within half of them.
void BM_EngineDense(benchmark::State& state) {
    std::vector<float> pcm = MakeBenchNoise(kTwoHours);
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        std::size_t const since = i % kDenseSpacing;
        pcm[i] *= since < kDenseSpacing / 2
                      ? 1.0f - static_cast<float>(since) / static_cast<float>(kDenseSpacing / 2)
                      : 0.0f;
    }
    RunEngine(state, pcm);
}
BENCHMARK(BM_EngineDense)->Arg(0)->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace
