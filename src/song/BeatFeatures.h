// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/BeatListener.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What sounds at one half beat; docs/song/BeatTimes.md has the list.
constexpr std::size_t kBeatAccents = 18;
using CBeatAccents = std::array<double, kBeatAccents>;

/// The accents of every half beat, each kind of them with mean 0 and deviation 1 over the song.
/// `rises` are those of `curves.m_vAttack`.
[[nodiscard]] std::vector<CBeatAccents> AccentsOf(CBeatCurves const& curves,
                                                  std::span<std::uint8_t const> rises,
                                                  std::span<double const> halfBeats);

/// One way to count a grid of half beats: so many beats a measure, and the half beat that the first
/// downbeat falls on, below twice as many.
struct CBeatReading {
    std::size_t m_nBeats = 0;
    std::size_t m_nFirst = 0;
};

/// Every way: three beats and four, six phases and eight.
constexpr std::size_t kBeatReadings = 14;
[[nodiscard]] std::array<CBeatReading, kBeatReadings> ListBeatReadings();

/// The numbers that a reading is scored by.
constexpr std::size_t kBeatFeatures = kBeatAccents * (6 + 8) + 8;
using CBeatFeatures = std::array<double, kBeatFeatures>;
[[nodiscard]] std::array<CBeatFeatures, kBeatReadings>
BeatFeaturesOf(std::span<CBeatAccents const> accents);
