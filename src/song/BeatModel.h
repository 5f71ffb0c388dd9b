// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>

/// Coefficients of the model of beats and downbeats, written by scripts/beat_model/train.py. A
/// reading's share is the softmax, over the readings of its song, of the sum of its numbers times
/// these.
[[nodiscard]] std::span<float const> BeatWeights();
