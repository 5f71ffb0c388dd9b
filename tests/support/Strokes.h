// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Made envelopes of songs: strokes that ring off over a quiet ground, one value each 256 samples at
// 44100 Hz. The same arguments give the same values on every run.

/// Adds a stroke of `height` at element `start`, which falls to half of it every 12 elements.
void AddStroke(std::vector<double>& envelope, std::size_t start, double height);

/// An envelope with strokes of heights and distances that `seed` draws.
std::vector<double> StrokesOf(std::uint32_t seed, std::size_t elements);

/// The same with strokes on a grid of sixteenths at this tempo, as a machine plays them.
std::vector<double> MachineStrokesOf(std::uint32_t seed, std::size_t elements, double bpm);

/// Levels from 0 to 255, which is the highest value.
std::vector<std::uint8_t> LevelsFrom(std::vector<double> const& envelope);
