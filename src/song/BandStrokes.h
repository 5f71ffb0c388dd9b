// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/EngineRate.h"
#include "song/BeatListener.h"
#include "song/RunningMeans.h"

#include <array>
#include <span>

constexpr double kBandRate = kEngineRateHz / static_cast<double>(kBandHopSamples); // rows a second

/// What a moment does to each band, in levels: how far it rises, and how high.
struct CBandStroke {
    std::array<double, kBeatBands> m_rise{};
    std::array<double, kBeatBands> m_top{};
};

/// The bands of a song (CBeatCurves::m_vBands), from 45 dB below the loudest of each upwards.
/// Refers to `bands`, which must outlive it.
class CBandStrokes {
public:
    explicit CBandStrokes(CBandRows const& bands);

    [[nodiscard]] CBandStroke At(double seconds) const;

    /// By how much the bands rise together at these moments, in the mean.
    [[nodiscard]] double MeanRise(std::span<double const> moments) const;

    [[nodiscard]] CRunningMeans<kBeatBands> const& Levels() const { return m_levels; }

private:
    CBandRows const& m_vBands;
    std::array<int, kBeatBands> m_floor;
    CRunningMeans<kBeatBands> m_levels;
};
