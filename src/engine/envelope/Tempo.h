// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

constexpr float kSlowestTempoBpm = 82.0f;  // Fixed: lower edge of the tempo band.
constexpr float kMeasuresPerBeat = 0.25f;  // Fixed: a measure is always four beats.
constexpr float kSecondsPerMinute = 60.0f; // Standard: beats per minute to beats per second.

/// Samples in one measure of four beats.
/// Units: `bpm` in beats per minute, `sampleRate` in samples per second.
/// Returns: sampleRate / ((bpm * 0.25) / 60), each step in single precision, truncated; 0 when the
/// measures per second come out as exactly 0. 120 BPM at 44100 Hz: 88200.
[[nodiscard]] std::uint32_t SamPerMeas(float bpm, std::uint32_t sampleRate);
