// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/Tempo.h"

#include "base/Rounding.h"

std::uint32_t SamPerMeas(float bpm, std::uint32_t sampleRate) {
    float const measuresPerSecond = bpm * kMeasuresPerBeat / kSecondsPerMinute;
    if (measuresPerSecond == 0.0f) {
        return 0;
    }
    return TruncateTo<std::uint32_t>(static_cast<float>(sampleRate) / measuresPerSecond);
}
