// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Onsets, tempo, grid and measures of a track of two hours at 44100 Hz. The envelope is noise with
// a pulse on every half beat at 128 BPM; `candidates` counts the onsets that the grid is built
// from.

#include "engine/beats/BeatBuilder.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/tempo/BpmDetector.h"
#include "engine/tempo/ImpactFinder.h"

#include <benchmark/benchmark.h>
#include <cstdint>

namespace {

constexpr std::uint32_t kRate = 44100;
constexpr std::uint16_t kPerElement = 256;
constexpr std::int64_t kTwoHours = std::int64_t{kRate} * 7200;
constexpr double kHalfBeat = kRate * 60.0 / 128.0 / 2.0; // samples
constexpr float kBpm = 128.0f;

/// Numerical Recipes' 32-bit generator, in [0, 1).
class CNoise {
public:
    float Next() {
        m_nState = m_nState * 1664525U + 1013904223U;
        return static_cast<float>(m_nState >> 8U) / 16777216.0f;
    }

private:
    std::uint32_t m_nState = 1;
};

/// Noise up to `noise`, and pulses of 1 to 2 that fall by a tenth an element.
CPfPcmThumbnail MakeTrack(float noise) {
    CPfPcmThumbnail thumb;
    (void)thumb.Initialize(kTwoHours, kRate, kPerElement);
    CNoise random;
    float pulse = 0.0f;
    double next = 0.0;
    for (std::int32_t i = 0; i < thumb.GetCount(); ++i) {
        pulse *= 0.9f;
        if (i * static_cast<double>(kPerElement) >= next) {
            pulse = 1.0f + random.Next();
            next += kHalfBeat;
        }
        thumb.SetAt(i, pulse + noise * random.Next());
    }
    return thumb;
}

CPfPcmThumbnail MakeHeld(CPfPcmThumbnail const& track) {
    CPfPcmThumbnail held(track);
    CPcmThumbnailBuilder builder(nullptr, kRate);
    (void)builder.PeakHoldThumbnail(&held);
    held.ApplyBpm(kBpm);
    return held;
}

/// One onset every `spacing` elements.
CPfImpactPoints MakeDense(std::int32_t spacing) {
    CPfImpactPoints points(kRate, kTwoHours);
    for (std::int64_t i = 0; i * kPerElement < kTwoHours; i += spacing) {
        points.Add(i * kPerElement);
    }
    return points;
}

CPfImpactPoints MakeGrid() {
    CPfImpactPoints grid(kRate, kTwoHours);
    grid.Add(0);
    CPfBeatBuilder::ExtrapolatePoints(static_cast<float>(kHalfBeat), kTwoHours, &grid);
    grid.SetResolution(8);
    return grid;
}

template <typename Scan>
void RunScan(benchmark::State& state, Scan scan) {
    CPfPcmThumbnail const track = MakeTrack(0.5f);
    std::int64_t found = 0;
    for (auto _ : state) {
        CPfImpactPoints points(kRate, kTwoHours);
        found = scan(track, &points);
        benchmark::DoNotOptimize(points.GetUpperBound());
    }
    state.counters["onsets"] = static_cast<double>(found);
    state.SetItemsProcessed(state.iterations() * track.GetCount());
}

void BM_SlopeScan(benchmark::State& state) {
    RunScan(state, [](CPfPcmThumbnail const& track, CPfImpactPoints* points) {
        return CPfImpactFinder::FindImpactPoints(&track, 0.5f, 4, points);
    });
}
BENCHMARK(BM_SlopeScan)->Unit(benchmark::kMillisecond);

void BM_RatioScan(benchmark::State& state) {
    RunScan(state, [](CPfPcmThumbnail const& track, CPfImpactPoints* points) {
        return CPfImpactFinder::FindImpactPointsClassic(&track, 5.0f, 4, points);
    });
}
BENCHMARK(BM_RatioScan)->Unit(benchmark::kMillisecond);

/// The whole search at eight points to the measure, as the grid does it.
void BM_SlopeSearch(benchmark::State& state) {
    RunScan(state, [](CPfPcmThumbnail const& track, CPfImpactPoints* points) {
        return CPfImpactFinder(nullptr).BuildImpactPoints(&track, 8, points);
    });
}
BENCHMARK(BM_SlopeSearch)->Unit(benchmark::kMillisecond);

/// One window of 20 s with the given number of onsets.
void BM_TempoWindow(benchmark::State& state) {
    CPfImpactPoints points(kRate, kTwoHours);
    std::int64_t const distance = 882'000 / (state.range(0) + 1);
    for (std::int64_t i = 1; i <= state.range(0); ++i) {
        points.Add(i * distance);
    }
    CPfBpmDetector const detector(nullptr);
    for (auto _ : state) {
        benchmark::DoNotOptimize(detector.DetectBpmWindow(&points, 0, 882'000, 4));
    }
}
BENCHMARK(BM_TempoWindow)->Arg(64)->Arg(512)->Unit(benchmark::kMicrosecond);

void RunClusters(benchmark::State& state, CPfPcmThumbnail const& track,
                 CPfImpactPoints const& candidates) {
    CPfBeatBuilder builder(nullptr);
    std::int64_t members = 0;
    for (auto _ : state) {
        CPfImpactPoints out(kRate, kTwoHours);
        float step = 0.0f;
        (void)builder.ClusterFilterPoints(&track, static_cast<float>(kHalfBeat), &candidates, &out,
                                          &step);
        members = out.GetUpperBound() + 1;
        benchmark::DoNotOptimize(step);
    }
    state.counters["candidates"] = candidates.GetUpperBound() + 1;
    state.counters["members"] = static_cast<double>(members);
}

/// Scoring, thinning, connecting and linking the onsets of a track; noise in per cent.
void BM_LinkTrack(benchmark::State& state) {
    CPfPcmThumbnail const track = MakeTrack(static_cast<float>(state.range(0)) / 100.0f);
    CPfImpactPoints candidates(kRate, kTwoHours);
    CPfImpactFinder(nullptr).BuildImpactPoints(&track, 8, &candidates);
    RunClusters(state, track, candidates);
}
BENCHMARK(BM_LinkTrack)->Arg(10)->Arg(50)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

/// The same with an onset every so many elements; 5 is as dense as the finder can be.
void BM_LinkDense(benchmark::State& state) {
    CPfPcmThumbnail const track = MakeTrack(0.5f);
    RunClusters(state, track, MakeDense(static_cast<std::int32_t>(state.range(0))));
}
BENCHMARK(BM_LinkDense)->Arg(20)->Arg(10)->Arg(5)->Unit(benchmark::kMillisecond);

/// A pulse every five elements and all alike, so that none of them is thinned out.
void BM_LinkUniform(benchmark::State& state) {
    CPfPcmThumbnail track;
    (void)track.Initialize(kTwoHours, kRate, kPerElement);
    for (std::int32_t i = 5; i < track.GetCount(); i += 5) {
        track.SetAt(i, 1.0f);
    }
    RunClusters(state, track, MakeDense(5));
}
BENCHMARK(BM_LinkUniform)->Unit(benchmark::kMillisecond);

void BM_MeasureMarks(benchmark::State& state) {
    CPfPcmThumbnail const track = MakeTrack(0.5f);
    CPfPcmThumbnail const held = MakeHeld(track);
    CPfImpactPoints const grid = MakeGrid();
    for (auto _ : state) {
        CPfImpactPoints points(grid);
        CPfBeatBuilder::BuildMeasStartMarks(&track, &held, &points);
        benchmark::DoNotOptimize(points.MeasStartMarks().size());
    }
    state.counters["points"] = grid.GetUpperBound() + 1;
}
BENCHMARK(BM_MeasureMarks)->Unit(benchmark::kMillisecond);

/// Marks over an even grid from its first point on: the longest run there is.
void BM_ExtMeasureMarks(benchmark::State& state) {
    CPfImpactPoints grid = MakeGrid();
    grid.AddMeasStartMark(0);
    for (auto _ : state) {
        CPfImpactPoints points(grid);
        CPfBeatBuilder::BuildExtMeasStartMarks(&points);
        benchmark::DoNotOptimize(points.MeasStartMarks().size());
    }
    state.counters["points"] = grid.GetUpperBound() + 1;
}
BENCHMARK(BM_ExtMeasureMarks)->Unit(benchmark::kMillisecond);

void BM_BeatPattern(benchmark::State& state) {
    CPfPcmThumbnail const track = MakeTrack(0.5f);
    CPfImpactPoints const grid = MakeGrid();
    for (auto _ : state) {
        CPfBeatPattern pattern;
        CPfBeatBuilder::BuildBeatPattern(&track, &grid, &pattern);
        benchmark::DoNotOptimize(pattern.GetValue(0));
    }
}
BENCHMARK(BM_BeatPattern)->Unit(benchmark::kMillisecond);

} // namespace
