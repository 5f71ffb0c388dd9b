// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

constexpr std::size_t kFewestTaps = 4; // Fixed: three spans.
constexpr double kMinuteSeconds = 60.0;

/// A tempo that was tapped.
struct CTappedTempo {
    double m_dTapped = 0.0; // from the median of the spans
    double m_dError = 0.0;  // its standard error in BPM, as far as the spans tell
    double m_dBpm = 0.0;    // what is meant: a reading of the song within 1 %, else as tapped
};

/// Taps on the beats of a song, as they come in. One that comes later than any beat from 20 BPM on,
/// or before its forerunner, begins anew.
/// Thread: one.
class CTapping {
public:
    /// `seconds`: when it was done, from whatever time on.
    void Tap(double seconds);
    void Clear() { m_vSeconds.clear(); }

    [[nodiscard]] std::size_t Count() const { return m_vSeconds.size(); }

    /// `readings`: tempos that the song is known to have. Returns: nothing for fewer than four taps
    /// and outside 20 to 999.
    [[nodiscard]] std::optional<CTappedTempo> Tempo(std::span<double const> readings) const;

private:
    std::vector<double> m_vSeconds;
};
