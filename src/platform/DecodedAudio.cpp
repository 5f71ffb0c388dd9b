// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodedAudio.h"

#include <limits>

std::optional<std::int32_t> SampleCountOf(std::int64_t frames) {
    // Deliberate: frames at the file's own rate count samples at 44100 Hz, their low 32 bits only.
    // A slower file is cut short, a faster one ends in zeros.
    auto const low = static_cast<std::uint32_t>(frames & 0xFFFFFFFF);
    if (low > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(low);
}
