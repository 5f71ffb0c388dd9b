// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The readings of a song of so many seconds, from envelopes with a pulse on every half beat at
// 128 BPM over noise. To be compared with the whole profile in EngineBench.

#include "engine/beats/BeatPattern.h"
#include "engine/envelope/PcmThumbnail.h"
#include "song/TempoCandidates.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>

namespace {

constexpr std::uint32_t kRate = 44100;
constexpr std::uint16_t kPerElement = 256;
constexpr float kBpm = 128.0f;

CPfPcmThumbnail MakeEnvelope(std::int64_t seconds, float beatsPerStroke) {
    CPfPcmThumbnail envelope;
    (void)envelope.Initialize(seconds * kRate, kRate, kPerElement);
    float const elements = static_cast<float>(kRate) / kPerElement * 60.0f / kBpm * beatsPerStroke;
    std::uint32_t state = 1; // Numerical Recipes' 32-bit generator
    for (std::int32_t i = 0; i < envelope.GetCount(); ++i) {
        state = state * 1664525U + 1013904223U;
        float const noise = static_cast<float>(state >> 8U) / 16777216.0f;
        float const since = std::fmod(static_cast<float>(i), elements);
        envelope.SetAt(i, 0.2f * noise + 1.0f / (1.0f + since));
    }
    return envelope;
}

void BM_TempoCandidates(benchmark::State& state) {
    CPfPcmThumbnail const energy = MakeEnvelope(state.range(0), 0.5f);
    CPfPcmThumbnail const bass = MakeEnvelope(state.range(0), 1.0f);
    CPfBeatPattern pattern;
    pattern.Initialize(8);
    CTempoSource const source{&energy, &bass, &pattern, &pattern, kBpm, kBpm};
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindTempoCandidates(source));
    }
}
BENCHMARK(BM_TempoCandidates)->Arg(46)->Arg(240)->Arg(7200)->Unit(benchmark::kMicrosecond);

} // namespace
