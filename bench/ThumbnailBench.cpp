// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Kernels of the pass over the audio and the envelope shapers, on one minute of sound.

#include "BenchKernels.h"
#include "BenchSignal.h"
#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/signal/SpecEngBuilder.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

namespace {

constexpr std::int64_t kMinuteSamples = 44100 * 60;
constexpr std::uint16_t kFrameLength = 256;
constexpr float kBpm = 120.0f;

/// An envelope of one minute with a tempo applied.
CPfPcmThumbnail MakeEnvelope() {
    CPfPcmThumbnail thumb;
    (void)thumb.Initialize(kMinuteSamples, 44100, kFrameLength);
    std::vector<float> const pcm = MakeBenchNoise(static_cast<std::size_t>(kMinuteSamples));
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    (void)builder.BuildPcmThumbnailRange(pcm.data(), static_cast<std::int32_t>(kMinuteSamples), 0,
                                         &thumb);
    thumb.ApplyBpm(kBpm);
    return thumb;
}

void BM_FftFrame(benchmark::State& state) {
    std::vector<float> const pcm = MakeBenchNoise(kFrameLength);
    std::vector<float> work(kFrameLength);
    CPfSpecEngBuilder const specEng(kFrameLength);
    for (auto _ : state) {
        work = pcm;
        specEng.RealFFT(work.data(), kFrameLength);
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(state.iterations() * kFrameLength);
}
BENCHMARK(BM_FftFrame);

void BM_SpecEnergyFrame(benchmark::State& state) {
    std::vector<float> const pcm = MakeBenchNoise(kFrameLength);
    CPfSpecEngBuilder specEng(kFrameLength);
    for (auto _ : state) {
        benchmark::DoNotOptimize(specEng.GetSpecEnergy(pcm.data()));
    }
    state.SetItemsProcessed(state.iterations() * kFrameLength);
}
BENCHMARK(BM_SpecEnergyFrame);

/// The pass alone, without listeners.
void BM_SpectralPass(benchmark::State& state) {
    CBenchKernels const kernels(state);
    std::vector<float> const pcm = MakeBenchNoise(static_cast<std::size_t>(kMinuteSamples));
    CPcmReader reader(pcm.data(), static_cast<std::int32_t>(kMinuteSamples));
    CProfiler profiler(nullptr);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    for (auto _ : state) {
        CPfPcmThumbnail thumb;
        (void)builder.BuildSpecEng(&profiler, &reader, kFrameLength, &thumb, nullptr, nullptr);
        benchmark::DoNotOptimize(thumb.GetAt(0));
    }
    state.SetItemsProcessed(state.iterations() * kMinuteSamples);
}
BENCHMARK(BM_SpectralPass)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

/// The largest of every 256 samples.
void BM_PeakPass(benchmark::State& state) {
    CBenchKernels const kernels(state);
    std::vector<float> const pcm = MakeBenchNoise(static_cast<std::size_t>(kMinuteSamples));
    CPfPcmThumbnail thumb;
    (void)thumb.Initialize(kMinuteSamples, 44100, kFrameLength);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    for (auto _ : state) {
        (void)builder.BuildPcmThumbnailRange(pcm.data(), static_cast<std::int32_t>(kMinuteSamples),
                                             0, &thumb);
        benchmark::DoNotOptimize(thumb.GetAt(0));
    }
    state.SetItemsProcessed(state.iterations() * kMinuteSamples);
}
BENCHMARK(BM_PeakPass)->Unit(benchmark::kMicrosecond)->Apply(ForEveryKernel);

/// One shaper on fresh copies of the envelope; the copy is part of the time, as in a run.
template <typename Shape>
void RunShaper(benchmark::State& state, Shape shape) {
    CPfPcmThumbnail const envelope = MakeEnvelope();
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    for (auto _ : state) {
        CPfPcmThumbnail thumb(envelope);
        shape(builder, thumb);
        benchmark::DoNotOptimize(thumb.GetAt(0));
    }
    state.SetItemsProcessed(state.iterations() * envelope.GetCount());
}

void BM_Smooth(benchmark::State& state) {
    RunShaper(state, [](CPcmThumbnailBuilder& builder, CPfPcmThumbnail& thumb) {
        (void)builder.SmoothThumbnail(&thumb);
    });
}
BENCHMARK(BM_Smooth)->Unit(benchmark::kMicrosecond);

void BM_PeakHold(benchmark::State& state) {
    RunShaper(state, [](CPcmThumbnailBuilder& builder, CPfPcmThumbnail& thumb) {
        (void)builder.PeakHoldThumbnail(&thumb);
    });
}
BENCHMARK(BM_PeakHold)->Unit(benchmark::kMicrosecond);

void BM_PeakHoods(benchmark::State& state) {
    RunShaper(state, [](CPcmThumbnailBuilder& builder, CPfPcmThumbnail& thumb) {
        (void)builder.ApplyPeakHoods(&thumb, 2);
    });
}
BENCHMARK(BM_PeakHoods)->Unit(benchmark::kMicrosecond);

void BM_MaxRunningMeasAvg(benchmark::State& state) {
    CPfPcmThumbnail const envelope = MakeEnvelope();
    for (auto _ : state) {
        benchmark::DoNotOptimize(envelope.CalcMaxRunningMeasAvg(kBpm));
    }
    state.SetItemsProcessed(state.iterations() * envelope.GetCount());
}
BENCHMARK(BM_MaxRunningMeasAvg)->Unit(benchmark::kMicrosecond);

} // namespace
