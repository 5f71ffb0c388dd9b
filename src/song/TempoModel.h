// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>

/// Coefficients of the two logistic models, written by scripts/tempo_model/train.py.

/// A reading's score is the softmax, over the readings of its song, of the sum of its features
/// times these.
[[nodiscard]] std::span<float const> ReadingWeights();

/// The confidence is the logistic function of the sum of the song's features times these; the
/// constant comes last.
[[nodiscard]] std::span<float const> ConfidenceWeights();
