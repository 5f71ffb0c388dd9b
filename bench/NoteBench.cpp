// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The bass road: filter, in lanes and in silence, note search on ordinary and on bass-heavy sound,
// order and pruning of the notes. A second argument of 1 forces the plain loops.

#include "BenchKernels.h"
#include "BenchSignal.h"
#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/notes/NoteDetector.h"
#include "engine/signal/IIRFilt.h"
#include "engine/signal/LaneFilter.h"
#include "engine/signal/QuietFilter.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <span>
#include <vector>

namespace {

constexpr std::int32_t kMinuteSamples = 44100 * 60;
constexpr std::int32_t kFrame = 256;

CIIRFilt MakeBassFilter() {
    CIIRFilt filter;
    filter.Init(44100);
    filter.SetSectionCount(3);
    for (int i = 0; i < 3; ++i) {
        filter.SetSection(i, CIIRFilt::kLowPass, 120.0f, 1.25f);
    }
    filter.setfilt();
    return filter;
}

/// Filters a copy of one minute in frames.
template <typename Run>
void RunFilter(benchmark::State& state, Run run) {
    std::vector<float> const pcm = MakeBenchSong(kMinuteSamples);
    std::vector<float> work = pcm;
    CIIRFilt filter = MakeBassFilter();
    for (auto _ : state) {
        std::copy(pcm.begin(), pcm.end(), work.begin());
        for (std::int32_t pos = 0; pos + kFrame <= kMinuteSamples; pos += kFrame) {
            run(filter, &work[static_cast<std::size_t>(pos)]);
        }
        benchmark::DoNotOptimize(work.data());
    }
    state.SetItemsProcessed(state.iterations() * kMinuteSamples);
}

void BM_BassFilter(benchmark::State& state) {
    CBenchKernels const kernels(state);
    RunFilter(state, [](CIIRFilt& filter, float* x) { filter.fl(x, 0, kFrame, 1); });
}
BENCHMARK(BM_BassFilter)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

CIIRSection GetBassSection() {
    CIIRFilt const filter = MakeBassFilter();
    float const* const b = filter.GetNumerator(0);
    float const* const a = filter.GetDenominator(0);
    return {b[0], b[1], b[2], a[0], a[1]};
}

/// Four minutes in frames.
void RunLaneFilter(benchmark::State& state, std::int32_t lanes) {
    std::vector<float> const pcm = MakeBenchSong(std::size_t{4} * kMinuteSamples);
    for (auto _ : state) {
        CLaneFilter filter(GetBassSection(), lanes, 160'000);
        auto const drop = [&filter] {
            for (auto done = filter.GetFinished(); !done.empty(); done = filter.GetFinished()) {
                benchmark::DoNotOptimize(done.data());
                filter.Drop(done.size());
            }
        };
        for (std::span<float const> rest(pcm); !rest.empty();) {
            std::size_t const taken =
                filter.Push(rest.first(std::min<std::size_t>(kFrame, rest.size())));
            rest = rest.subspan(taken);
            if (taken == 0) {
                filter.Run();
                drop();
            }
        }
        filter.Finish();
        drop();
    }
    state.SetItemsProcessed(state.iterations() * 4 * kMinuteSamples);
}

/// The argument is the number of lanes.
void BM_LaneFilterLanes(benchmark::State& state) {
    RunLaneFilter(state, static_cast<std::int32_t>(state.range(0)));
}
BENCHMARK(BM_LaneFilterLanes)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

/// As many lanes as the kernels have.
void BM_LaneFilter(benchmark::State& state) {
    CBenchKernels const kernels(state);
    RunLaneFilter(state, GetLaneCount());
}
BENCHMARK(BM_LaneFilter)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

/// The decay of the filter into silence from the size at which the quiet way takes over, until it
/// rests; an argument of 1 takes the plain loop.
void BM_QuietFilter(benchmark::State& state) {
    constexpr std::int32_t kDecay = 8192;
    std::vector<float> const silence(kDecay);
    std::vector<float> out(kDecay);
    CIIRSection const section = GetBassSection();
    for (auto _ : state) {
        CThreeStates states;
        states.fill(0x1.0p-96f);
        CIIRLane const lane{silence.data(), out.data(), &states};
        if (state.range(0) == 0) {
            FilterQuiet(section, lane, kDecay);
        } else {
            FilterLanePlain(section, lane, kDecay);
        }
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * kDecay);
}
BENCHMARK(BM_QuietFilter)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// One minute, filtered, in strides as the detector searches it.
void RunSearch(benchmark::State& state, std::vector<float> pcm) {
    CBenchKernels const kernels(state);
    CIIRFilt filter = MakeBassFilter();
    filter.fl(pcm.data(), 0, kMinuteSamples, 1);
    CPcmReader reader(pcm.data(), kMinuteSamples);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail thumb;
    CPfNoteDetector const detector(&reader, &builder, &thumb);
    std::uint32_t found = 0;
    for (auto _ : state) {
        CPfNoteMap map;
        for (std::int32_t pos = 0; pos + 61440 <= kMinuteSamples; pos += 32768) {
            (void)detector.FindPeriodicWaveforms(&pcm[static_cast<std::size_t>(pos)], 32768, 61440,
                                                 pos, &map);
        }
        found = map.GetCount();
    }
    state.counters["notes"] = found;
    state.SetItemsProcessed(state.iterations() * kMinuteSamples);
}

void BM_NoteSearchSong(benchmark::State& state) {
    RunSearch(state, MakeBenchSong(kMinuteSamples));
}
BENCHMARK(BM_NoteSearchSong)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

void BM_NoteSearchBass(benchmark::State& state) {
    RunSearch(state, MakeBenchBassLine(kMinuteSamples));
}
BENCHMARK(BM_NoteSearchBass)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

/// The whole detector on one minute, filter and thumbnail included.
void RunDetector(benchmark::State& state, std::vector<float> const& pcm) {
    CBenchKernels const kernels(state);
    CPcmReader reader(pcm.data(), kMinuteSamples);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CProfiler profiler(nullptr);
    for (auto _ : state) {
        CPfPcmThumbnail thumb;
        CPfNoteDetector detector(&reader, &builder, &thumb);
        for (std::int32_t pos = 0; pos + kFrame <= kMinuteSamples; pos += kFrame) {
            (void)detector.PushPcm(&pcm[static_cast<std::size_t>(pos)], kFrame);
        }
        (void)detector.FinalizeNoteDetection(&profiler);
        benchmark::DoNotOptimize(thumb.GetAt(0));
    }
    state.SetItemsProcessed(state.iterations() * kMinuteSamples);
}

void BM_NoteDetectorSong(benchmark::State& state) {
    RunDetector(state, MakeBenchSong(kMinuteSamples));
}
BENCHMARK(BM_NoteDetectorSong)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

void BM_NoteDetectorBass(benchmark::State& state) {
    RunDetector(state, MakeBenchBassLine(kMinuteSamples));
}
BENCHMARK(BM_NoteDetectorBass)->Apply(ForEveryKernel)->Unit(benchmark::kMillisecond);

/// Strengths as the search gives them: some hundred values, so that most notes have equals.
float StrengthOf(std::uint32_t random) {
    return 1.0f - static_cast<float>(random >> 23U) * 0x1.0p-24f;
}

void FillMap(CPfNoteMap& map, std::int64_t count) {
    std::uint32_t random = 1;
    for (std::int64_t i = 0; i < count; ++i) {
        random = random * 1664525U + 1013904223U;
        (void)map.AddDetection(static_cast<std::uint32_t>(i % 24), i * 4000, StrengthOf(random));
    }
}

void BM_NoteMapAdd(benchmark::State& state) {
    for (auto _ : state) {
        CPfNoteMap map;
        FillMap(map, state.range(0));
        benchmark::DoNotOptimize(map.GetCount());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_NoteMapAdd)->Arg(10000)->Arg(100000)->Arg(500000)->Unit(benchmark::kMillisecond);

/// Filling and pruning; what `BM_NoteMapAdd` takes is part of it.
void BM_NoteMapAddAndPrune(benchmark::State& state) {
    for (auto _ : state) {
        CPfNoteMap map;
        FillMap(map, state.range(0));
        (void)map.RemoveSimilarItems(500000);
        benchmark::DoNotOptimize(map.GetCount());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_NoteMapAddAndPrune)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(500000)
    ->Unit(benchmark::kMillisecond);

} // namespace
