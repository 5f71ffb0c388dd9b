// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Samples of any bits, NaN, infinities and denormals among them, go through the whole engine. Two
// runs give the same record to the last bit, and every position lies where it can.

#include "FuzzFile.h"
#include "base/SmartPtr.h"
#include "engine/Fingerprint.h"
#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"

#include <bit>
#include <cstring>

namespace {

constexpr std::size_t kMostSamples = 200'000; // Fixed: 4.5 s, past every special case of shortness.

struct CRun {
    CProfileResults m_results;
    CSmartPtr<CFingerprint> m_print;
    CSmartPtr<CFingerprint> m_largePrint;
};

/// The input is a pattern of samples, repeated up to a length that its first bytes tell.
std::vector<float> MakeSamples(std::uint8_t const* data, std::size_t size) {
    std::uint32_t head = 0;
    std::memcpy(&head, data, std::min(size, sizeof head));
    std::vector<float> pattern(size > sizeof head ? (size - sizeof head) / sizeof(float) : 0);
    if (pattern.empty()) {
        return {};
    }
    std::memcpy(pattern.data(), data + sizeof head, pattern.size() * sizeof(float));
    std::vector<float> samples(std::max<std::size_t>(head % kMostSamples, pattern.size()));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = pattern[i % pattern.size()];
    }
    return samples;
}

void Profile(std::vector<float> const& samples, CRun* run) {
    run->m_print.Create();
    run->m_largePrint.Create();
    CProfileBuilder builder;
    CProfiler profiler(nullptr);
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    FUZZ_REQUIRE(builder.BuildProfile(&profiler, &reader, &run->m_results, run->m_print.Get(),
                                      run->m_largePrint.Get()) == 0);
}

std::vector<std::uint32_t> Bits(std::vector<float> const& values) {
    std::vector<std::uint32_t> bits;
    for (float const value : values) {
        bits.push_back(std::bit_cast<std::uint32_t>(value));
    }
    return bits;
}

bool HaveSameBits(CRun const& a, CRun const& b) {
    std::uint16_t tonicA = 0;
    std::uint16_t tonicB = 0;
    std::uint16_t modeA = 0;
    std::uint16_t modeB = 0;
    a.m_results.GetKey(&tonicA, &modeA);
    b.m_results.GetKey(&tonicB, &modeB);
    return Bits({a.m_results.GetBpm(), a.m_results.GetPeakLevel()}) ==
               Bits({b.m_results.GetBpm(), b.m_results.GetPeakLevel()}) &&
           tonicA == tonicB && modeA == modeB &&
           a.m_results.GetMeasMarks() == b.m_results.GetMeasMarks() &&
           a.m_results.GetIntroFadePoints() == b.m_results.GetIntroFadePoints() &&
           a.m_results.GetIntroSprockets() == b.m_results.GetIntroSprockets() &&
           a.m_results.GetOutroSprockets() == b.m_results.GetOutroSprockets() &&
           Bits(a.m_print->GetValues()) == Bits(b.m_print->GetValues()) &&
           Bits(a.m_largePrint->GetValues()) == Bits(b.m_largePrint->GetValues());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::vector<float> const samples = MakeSamples(data, size);
    CRun first;
    CRun second;
    Profile(samples, &first);
    Profile(samples, &second);
    FUZZ_REQUIRE(HaveSameBits(first, second));
    auto const count = static_cast<std::int64_t>(samples.size());
    FUZZ_REQUIRE(first.m_results.GetSampleCount() == count);
    for (std::int64_t const mark : first.m_results.GetMeasMarks()) {
        FUZZ_REQUIRE(mark >= 0 && mark <= count);
    }
    FUZZ_REQUIRE(first.m_results.GetIntroEnd() >= 0 && first.m_results.GetIntroEnd() <= count);
    FUZZ_REQUIRE(first.m_results.GetOutroStart() >= first.m_results.GetIntroEnd());
    return 0;
}
