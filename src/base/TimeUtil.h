// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// Position in microseconds, rounded to the nearest by adding half the rate before a division that
/// truncates toward zero; a negative position thus rounds toward zero.
/// Units: `pos` in samples, `rate` in samples per second. A rate of 0 gives 0.
[[nodiscard]] std::int64_t SamplePosToTime(std::int64_t pos, std::uint32_t rate);

/// Sample position of a time in microseconds: (time * rate + 500000) / 1000000, truncated toward
/// zero.
[[nodiscard]] std::int64_t TimeToSamplePos(std::int64_t time, std::uint32_t rate);

/// Counts of intervals between times, all in microseconds.
class CTimeUtil {
public:
    /// Whole intervals from `start` to `end`: (end - start) / interval + 0.5 in double, truncated
    /// toward zero. An interval of 0 gives 0.
    static std::int32_t GetIntervalCount(std::int64_t start, std::int64_t end,
                                         std::int64_t interval);

    /// Splits a time into whole intervals and the fraction of the next one.
    /// Returns: false, outputs untouched, when the interval is 0 or the quotient negative.
    static bool MapTimeToMtOffset(std::int64_t time, std::int64_t interval, std::int32_t* index,
                                  float* fraction);
};
