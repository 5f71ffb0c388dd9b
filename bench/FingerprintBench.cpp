// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The fingerprint's share of the pass: one minute in frames, of which it looks at 30 seconds.

#include "BenchSignal.h"
#include "engine/print/Fingerprint.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t kMinuteSamples = 44100 * 60;
constexpr std::uint32_t kFrame = 256;

void BM_FingerprintPush(benchmark::State& state) {
    std::vector<float> pcm = MakeBenchNoise(kMinuteSamples);
    for (float& sample : pcm) {
        sample *= 0.4f; // a range below 1, so that the search for a wider excerpt never ends
    }
    for (auto _ : state) {
        CSmartPtr<CFingerprint> print;
        print.Create();
        CPfFingerprintBuilder builder(print.Get(), nullptr, nullptr);
        builder.SetSampleRate(44100);
        for (std::size_t pos = 0; pos + kFrame <= kMinuteSamples; pos += kFrame) {
            benchmark::DoNotOptimize(builder.PushPcm(&pcm[pos], kFrame));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kMinuteSamples));
}
BENCHMARK(BM_FingerprintPush)->Unit(benchmark::kMillisecond);

/// With an excerpt of an earlier run to look for, 100 samples later than recorded.
void BM_FingerprintSearch(benchmark::State& state) {
    std::vector<float> const pcm = MakeBenchNoise(kMinuteSamples);
    for (auto _ : state) {
        CSmartPtr<CFingerprint> reference;
        reference.Create();
        reference->CapturePrint(&pcm[100100], 512, 100000LL * 1000000 / 44100, -1.0f, 1.0f);
        std::int64_t offset = 0;
        CPfFingerprintBuilder builder(nullptr, reference.Get(), &offset);
        builder.SetSampleRate(44100);
        for (std::size_t pos = 0; pos + kFrame <= kMinuteSamples; pos += kFrame) {
            benchmark::DoNotOptimize(builder.PushPcm(&pcm[pos], kFrame));
        }
        benchmark::DoNotOptimize(offset);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kMinuteSamples));
}
BENCHMARK(BM_FingerprintSearch)->Unit(benchmark::kMillisecond);

} // namespace
