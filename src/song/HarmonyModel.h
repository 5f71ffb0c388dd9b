// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <span>

/// Numbers that a key is judged by: notes of three registers, basses, major and minor triads, by
/// their distance above the tonic in semitones.
constexpr std::size_t kHarmonyFeatures = 72;

/// Coefficients of the logistic model, written by scripts/harmony/train.py: `kHarmonyFeatures` of
/// major keys, as many of minor ones, and a minor key's constant.
[[nodiscard]] std::span<float const> HarmonyWeights();
