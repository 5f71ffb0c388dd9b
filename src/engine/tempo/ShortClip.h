// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// Tempo at which a clip of less than 30 s is one measure of four beats, doubled or halved into
/// the band from 82 to 164.01 BPM; 0 for an empty clip. Any longer clip, and a rate of 0, leave
/// `bpm` alone.
void UpdateShortClipBpm(std::int64_t sampleCount, std::uint32_t sampleRate, float* bpm);
