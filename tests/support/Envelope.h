// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/envelope/PcmThumbnail.h"

#include <cstdint>
#include <vector>

/// A thumbnail that holds `values`.
inline CPfPcmThumbnail MakeEnvelope(std::vector<float> const& values, std::uint32_t rate,
                                    std::uint16_t samplesPerElement) {
    CPfPcmThumbnail thumb;
    auto const count = static_cast<std::int64_t>(values.size());
    (void)thumb.Initialize(count * samplesPerElement, rate, samplesPerElement);
    for (std::int32_t i = 0; i < thumb.GetCount(); ++i) {
        thumb.SetAt(i, values[static_cast<std::size_t>(i)]);
    }
    return thumb;
}
