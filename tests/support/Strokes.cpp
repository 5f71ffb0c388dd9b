// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Strokes.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kElementsASecond = 44100.0 / 256.0;

/// A linear congruential generator; from 0 up to but not including 1.
class CDraw {
public:
    explicit CDraw(std::uint32_t seed) : m_nState(seed * 2654435761U + 1) {}

    double operator()() {
        m_nState = m_nState * 1664525U + 1013904223U;
        return static_cast<double>(m_nState >> 8U) / 16777216.0;
    }

private:
    std::uint32_t m_nState;
};

} // namespace

void AddStroke(std::vector<double>& envelope, std::size_t start, double height) {
    for (std::size_t i = start; i < envelope.size() && i < start + 120; ++i) {
        envelope[i] += height * std::exp2(-static_cast<double>(i - start) / 12.0);
    }
}

std::vector<double> StrokesOf(std::uint32_t seed, std::size_t elements) {
    CDraw draw(seed);
    std::vector<double> envelope(elements, 1.0);
    for (std::size_t at = 0; at < elements;) {
        AddStroke(envelope, at, 10.0 + 190.0 * draw());
        at += 10 + static_cast<std::size_t>(80.0 * draw());
    }
    return envelope;
}

std::vector<double> MachineStrokesOf(std::uint32_t seed, std::size_t elements, double bpm) {
    CDraw draw(seed);
    std::vector<double> envelope(elements, 1.0);
    double const step = kElementsASecond * 60.0 / bpm / 4.0;
    for (std::size_t i = 0; static_cast<double>(i) * step < static_cast<double>(elements); ++i) {
        double const chance = draw();
        double const height = i % 4 == 0 ? 150.0 : chance < 0.4 ? 100.0 * draw() : 0.0;
        AddStroke(envelope, static_cast<std::size_t>(static_cast<double>(i) * step), height);
    }
    return envelope;
}

std::vector<std::uint8_t> LevelsFrom(std::vector<double> const& envelope) {
    double const top = *std::ranges::max_element(envelope);
    std::vector<std::uint8_t> levels;
    for (double const value : envelope) {
        levels.push_back(static_cast<std::uint8_t>(std::lround(value / top * 255.0)));
    }
    return levels;
}
