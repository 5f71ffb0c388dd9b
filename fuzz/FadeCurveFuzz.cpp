// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A record with any fade points at any rate is asked for attenuations and times, and translated to
// another rate. On a curve as a run makes it, both lookups agree with each other.
//
// Input, little-endian: rate (4), other rate (4), time (8), attenuation (4), points (8 each).

#include "FuzzFile.h"
#include "engine/ProfileResults.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr std::int32_t kFadeStep = 600;                   // Fixed: between two fade points.
constexpr std::int64_t kUnset = 0x5A5A5A5A5A5A;           // no result of a sane curve
constexpr std::int64_t kLongestPlain = 10 * 60 * 192'000; // Fixed: ten minutes, in samples.

class CInputBytes {
public:
    CInputBytes(std::uint8_t const* data, std::size_t size) : m_pNext(data), m_nLeft(size) {}

    template <typename T>
    T Take() {
        T value{};
        std::size_t const count = std::min(sizeof value, m_nLeft);
        std::memcpy(&value, m_pNext, count);
        m_pNext += count;
        m_nLeft -= count;
        return value;
    }
    [[nodiscard]] bool IsEmpty() const { return m_nLeft == 0; }

private:
    std::uint8_t const* m_pNext;
    std::size_t m_nLeft;
};

/// Points that rise within ten minutes by less than what a product with 600 takes in 32 bits.
bool IsPlain(CProfileResults const& results) {
    auto const& points = results.GetIntroFadePoints();
    constexpr std::int64_t kMostApart = std::numeric_limits<std::int32_t>::max() / kFadeStep;
    for (std::size_t i = 0; i < points.GetCount(); ++i) {
        std::int64_t const before = i == 0 ? 0 : points[i - 1];
        if (points[i] < 0 || points[i] > kLongestPlain || (i > 0 && points[i] <= before) ||
            points[i] - before > kMostApart) {
            return false;
        }
    }
    return points.GetCount() > 1 && results.GetSampleRate() >= 8000 &&
           results.GetSampleRate() <= 192'000;
}

/// An attenuation inside the curve has a time, and that time has an attenuation that is as much
/// but for the truncation to whole samples and microseconds.
void CheckAgreement(CProfileResults const& results, std::int32_t atten) {
    auto const& points = results.GetIntroFadePoints();
    auto const deepest = -kFadeStep * static_cast<std::int32_t>(points.GetCount() - 1);
    std::int64_t time = kUnset;
    bool const isInside = atten >= deepest;
    FUZZ_REQUIRE(results.GetFilePosFromPrevSongAtten(atten, &time) == isInside);
    FUZZ_REQUIRE(isInside || time == kUnset);
    std::int32_t back = 1;
    if (!isInside || !results.GetPrevSongAttenAtFilePos(time, &back)) {
        return;
    }
    // Two samples are what the truncations cost: one of the position, one of the time.
    std::int64_t const wanted = std::min(atten, 0);
    std::int64_t narrowest = kLongestPlain;
    for (std::size_t i = 0; i + 1 < points.GetCount(); ++i) {
        narrowest = std::min(narrowest, points[i + 1] - points[i]);
    }
    FUZZ_REQUIRE(back >= deepest && back <= 0);
    FUZZ_REQUIRE(std::abs(back - wanted) <= 2 * kFadeStep / narrowest + 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    CInputBytes input(data, size);
    auto const rate = input.Take<std::uint32_t>();
    auto const otherRate = input.Take<std::uint32_t>();
    auto const time = input.Take<std::int64_t>();
    auto const atten = input.Take<std::int32_t>();
    CProfileResults results;
    results.SetSampleRate(rate, rate);
    while (!input.IsEmpty()) {
        results.AddIntroFadePoint(input.Take<std::uint64_t>());
    }
    std::int32_t gotAtten = 1;
    FUZZ_REQUIRE(results.GetPrevSongAttenAtFilePos(time, &gotAtten) || gotAtten == 1);
    std::int64_t gotTime = kUnset;
    FUZZ_REQUIRE(results.GetFilePosFromPrevSongAtten(atten, &gotTime) || gotTime == kUnset);
    if (IsPlain(results)) {
        CheckAgreement(results, atten);
    }
    results.SetSampleRate(otherRate, rate);
    FUZZ_REQUIRE(results.GetSampleRate() == otherRate);
    (void)results.GetPrevSongAttenAtFilePos(time, &gotAtten);
    (void)results.GetFilePosFromPrevSongAtten(atten, &gotTime);
    return 0;
}
