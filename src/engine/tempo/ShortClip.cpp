// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The tempo of a clip that is too short to find one in: the whole clip is one measure.

#include "engine/tempo/ShortClip.h"

#include "engine/envelope/Tempo.h"

namespace {

constexpr std::uint32_t kShortClipSeconds = 30;      // Fixed: clips under this get the rule.
constexpr double kBeatSecondsPerMinuteMeasure = 240; // Derived: 4 beats * 60 s.
constexpr double kSlowestBpm = static_cast<double>(kSlowestTempoBpm);
// Deliberate: the upper edge lies above the fastest candidate of 163.9, as a float widened.
constexpr double kFastestBpm = static_cast<double>(164.01f);
constexpr int kMostSteps = 202; // Fixed: doublings or halvings before giving up.

/// `bpm` doubled until it is not below the band any more.
double DoubleIntoBand(double bpm) {
    for (int step = 0; step < kMostSteps && bpm < kSlowestBpm; ++step) {
        bpm *= 2.0;
    }
    if (bpm < kSlowestBpm) {
        return kSlowestBpm;
    }
    return bpm > kFastestBpm ? kFastestBpm : bpm;
}

/// `bpm` halved until it is not above the band any more.
double HalveIntoBand(double bpm) {
    for (int step = 0; step < kMostSteps && bpm > kFastestBpm; ++step) {
        bpm *= 0.5;
    }
    if (bpm > kFastestBpm) {
        return kFastestBpm;
    }
    return bpm < kSlowestBpm ? kSlowestBpm : bpm;
}

} // namespace

void UpdateShortClipBpm(std::int64_t sampleCount, std::uint32_t sampleRate, float* bpm) {
    // The product wraps at 32 bits: rates above 143 MHz are short at odd lengths.
    std::uint32_t const shortClipSamples = sampleRate * kShortClipSeconds;
    if (sampleRate == 0 || sampleCount >= std::int64_t{shortClipSamples}) {
        return;
    }
    double const duration = static_cast<double>(sampleCount) / static_cast<double>(sampleRate);
    if (duration == 0.0) {
        *bpm = 0.0f;
        return;
    }
    double tempo = kBeatSecondsPerMinuteMeasure / duration;
    if (tempo < kSlowestBpm) {
        tempo = DoubleIntoBand(tempo);
    } else if (tempo > kFastestBpm) {
        tempo = HalveIntoBand(tempo);
    }
    *bpm = static_cast<float>(tempo);
}
