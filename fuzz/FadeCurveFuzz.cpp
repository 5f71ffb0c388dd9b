// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Fade curves through any points, looked up both ways: a lookup that answers no leaves its output
// alone, and translating positions to any rate ends.

#include "FuzzFile.h"
#include "engine/ProfileResults.h"

#include <cstring>

namespace {

constexpr std::size_t kMostPoints = 64;

template <typename Integer>
Integer Take(std::uint8_t const*& data, std::size_t& size) {
    Integer value{};
    std::size_t const taken = std::min(size, sizeof value);
    std::memcpy(&value, data, taken);
    data += taken;
    size -= taken;
    return value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    CProfileResults results;
    auto const newRate = Take<std::uint32_t>(data, size);
    auto const oldRate = Take<std::uint32_t>(data, size);
    auto const time = Take<std::int64_t>(data, size);
    auto const level = Take<std::int32_t>(data, size);
    for (std::size_t i = 0; i < kMostPoints && size > 0; ++i) {
        auto const point = Take<std::uint64_t>(data, size);
        results.AddIntroFadePoint(point);
        results.AddIntroBeatMixSproc(point);
    }
    results.SetSampleRate(newRate, oldRate);
    constexpr std::int32_t kLevelMark = 0x5A5A5A5A;
    constexpr std::int64_t kTimeMark = 0x5A5A5A5A5A5A5A5A;
    std::int32_t foundLevel = kLevelMark;
    FUZZ_REQUIRE(results.GetPrevSongAttenAtFilePos(time, &foundLevel) || foundLevel == kLevelMark);
    std::int64_t foundTime = kTimeMark;
    FUZZ_REQUIRE(results.GetFilePosFromPrevSongAtten(level, &foundTime) || foundTime == kTimeMark);
    CProfileResults const copy(results);
    FUZZ_REQUIRE(copy == results);
    return 0;
}
