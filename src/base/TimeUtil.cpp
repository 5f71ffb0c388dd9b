// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/TimeUtil.h"

#include "base/Rounding.h"

namespace {

constexpr std::int64_t kMicrosecondsPerSecond = 1'000'000; // Standard: SI.

/// Product that wraps around at 64 bits where a plain one would overflow.
std::int64_t WrappingProduct(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

/// Sum that wraps around at 64 bits.
std::int64_t WrappingSum(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

} // namespace

std::int64_t SamplePosToTime(std::int64_t pos, std::uint32_t rate) {
    if (rate == 0) {
        return 0;
    }
    return WrappingSum(WrappingProduct(pos, kMicrosecondsPerSecond), rate / 2) /
           static_cast<std::int64_t>(rate);
}

std::int64_t TimeToSamplePos(std::int64_t time, std::uint32_t rate) {
    return WrappingSum(WrappingProduct(time, rate), kMicrosecondsPerSecond / 2) /
           kMicrosecondsPerSecond;
}

std::int32_t CTimeUtil::GetIntervalCount(std::int64_t start, std::int64_t end,
                                         std::int64_t interval) {
    if (interval == 0) {
        return 0;
    }
    std::int64_t const distance = WrappingSum(end, WrappingProduct(start, -1));
    return TruncateToInt32(static_cast<double>(distance) / static_cast<double>(interval) + 0.5);
}

bool CTimeUtil::MapTimeToMtOffset(std::int64_t time, std::int64_t interval, std::int32_t* index,
                                  float* fraction) {
    if (interval == 0) {
        return false;
    }
    double const quotient = static_cast<double>(time) / static_cast<double>(interval);
    if (quotient < 0.0) {
        return false;
    }
    std::int64_t const whole = TruncateToInt64(quotient);
    *index = static_cast<std::int32_t>(whole);
    *fraction = static_cast<float>(quotient - static_cast<double>(whole));
    return true;
}
