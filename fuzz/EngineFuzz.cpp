// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Any PCM through every stage of the engine, twice: the record and both prints come out with the
// same bits, though fresh memory holds other bytes the second time, and the tempo is a number.
//
// Input: a byte whose lowest bit says how samples are written (0: four bytes each, any bit pattern;
// 1: one byte each, in 1/128) and whose upper half is the power of two of samples that each stands
// for; three bytes for the length, little-endian, modulo 200,001; the samples, taken in turn.

#include "FuzzFile.h"
#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/beats/BeatPattern.h"
#include "engine/print/Fingerprint.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <malloc.h>

namespace {

constexpr std::size_t kHeaderBytes = 4;         // Fixed: kind and length.
constexpr std::uint32_t kMostSamples = 200'000; // Fixed: four and a half seconds.

/// Everything that a run leaves, as bits.
using Bits = std::vector<std::uint64_t>;

struct CPcmInput {
    std::vector<float> m_vSamples;

    CPcmInput(std::uint8_t const* data, std::size_t size) {
        bool const isBytes = (data[0] & 1U) != 0;
        std::size_t const width = isBytes ? 1 : sizeof(float);
        std::size_t const hold = std::size_t{1} << (data[0] >> 4U);
        std::size_t const given = (size - kHeaderBytes) / width;
        std::uint32_t const length =
            data[1] | std::uint32_t{data[2]} << 8U | std::uint32_t{data[3]} << 16U;
        m_vSamples.resize(length % (kMostSamples + 1));
        for (std::size_t i = 0; i < m_vSamples.size() && given > 0; ++i) {
            std::uint8_t const* const place = data + kHeaderBytes + i / hold % given * width;
            if (isBytes) {
                // Held samples swing, so that they are loud above 0 Hz too.
                float const level = static_cast<float>(static_cast<std::int8_t>(*place)) / 128.0f;
                m_vSamples[i] = hold > 1 && i % 2 != 0 ? -level : level;
            } else {
                std::memcpy(&m_vSamples[i], place, sizeof(float));
            }
        }
    }
};

void Put(Bits& bits, float value) {
    bits.push_back(std::bit_cast<std::uint32_t>(value));
}

void Put(Bits& bits, std::int64_t value) {
    bits.push_back(static_cast<std::uint64_t>(value));
}

void Put(Bits& bits, CProfileResults::CPositions const& list) {
    bits.push_back(list.GetCount());
    for (std::int64_t const position : list) {
        Put(bits, position);
    }
}

void Put(Bits& bits, CPfBeatPattern const& pattern) {
    Put(bits, std::int64_t{pattern.GetCount()});
    for (std::int32_t i = 0; i < pattern.GetCount(); ++i) {
        Put(bits, pattern.GetValue(i));
    }
}

void Put(Bits& bits, CFingerprint const& print) {
    Put(bits, print.GetTime());
    Put(bits, print.GetMin());
    Put(bits, print.GetMax());
    bits.push_back(print.GetValues().size());
    for (float const value : print.GetValues()) {
        Put(bits, value);
    }
}

void Put(Bits& bits, CProfileResults const& results) {
    Put(bits, results.GetBpm());
    Put(bits, results.GetPeakLevel());
    Put(bits, results.GetIntroEnd());
    Put(bits, results.GetOutroStart());
    Put(bits, results.GetSampleCount());
    Put(bits, results.GetIntroSprockets());
    Put(bits, results.GetOutroSprockets());
    Put(bits, results.GetIntroFadePoints());
    Put(bits, results.GetMeasMarks());
    std::uint16_t tonic = 0;
    std::uint16_t mode = 0;
    results.GetKey(&tonic, &mode);
    FUZZ_REQUIRE(tonic < 12 && mode <= 2);
    bits.push_back(tonic * 4U + mode);
    CPfBeatPattern a;
    CPfBeatPattern b;
    results.GetBeatPatterns(&a, &b);
    Put(bits, a);
    Put(bits, b);
}

/// Marks, intro and outro lie inside the song.
void CheckPositions(CProfileResults const& results, std::int64_t count) {
    FUZZ_REQUIRE(results.GetSampleCount() == count);
    FUZZ_REQUIRE(results.GetIntroEnd() >= 0 && results.GetIntroEnd() <= count);
    FUZZ_REQUIRE(results.GetOutroStart() >= results.GetIntroEnd());
    for (std::int64_t const mark : results.GetMeasMarks()) {
        FUZZ_REQUIRE(mark >= 0 && mark <= count);
    }
}

/// One run. `filler` is what fresh memory holds, where the allocator can be told.
Bits Profile(std::vector<float> const& samples, int filler) {
    (void)mallopt(M_PERTURB, filler);
    Bits bits;
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    CProfiler profiler(nullptr);
    CProfileBuilder builder;
    CProfileResults results;
    CSmartPtr<CFingerprint> print;
    CSmartPtr<CFingerprint> largePrint;
    print.Create();
    largePrint.Create();
    FUZZ_REQUIRE(
        builder.BuildProfile(&profiler, &reader, &results, print.Get(), largePrint.Get()) == 0);
    FUZZ_REQUIRE(std::isfinite(results.GetBpm()) && results.GetBpm() >= 0.0f);
    CheckPositions(results, static_cast<std::int64_t>(samples.size()));
    Put(bits, results);
    Put(bits, *print.Get());
    Put(bits, *largePrint.Get());
    return bits;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < kHeaderBytes) {
        return 0;
    }
    CPcmInput const input(data, size);
    FUZZ_REQUIRE(Profile(input.m_vSamples, 0x00) == Profile(input.m_vSamples, 0x55));
    return 0;
}
