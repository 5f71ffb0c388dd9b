// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/EngineRate.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

constexpr double kOpeningElementSeconds = 256.0 / kEngineRateHz; // Fixed: as an envelope has it.
constexpr std::int32_t kMostOpeningShift = 344; // Derived: 2 s, more than a cut to be found.

/// The rises and falls of a song's opening, without its loudness: what stays when the song is
/// encoded, turned up or down, equalised or cut. Made from the levels of the envelope's opening.
/// A plain value.
class COpeningShape {
public:
    /// `levels` are from 0 to 255 in equal steps, one each 256 samples at 44100 Hz.
    explicit COpeningShape(std::span<std::uint8_t const> levels);

    [[nodiscard]] std::span<std::int16_t const> Steps() const { return m_vSteps; }

    /// Elements of strokes that stand out from all around them, ascending: found again in a copy,
    /// wherever it begins.
    [[nodiscard]] std::vector<std::int32_t> Anchors() const;

    /// 32 comparisons of what follows `anchor`, the next in time the highest bit; the first 20 say
    /// most. 0, with `isThere` false, where not enough follows.
    [[nodiscard]] std::uint32_t CodeAt(std::int32_t anchor, bool* isThere) const;

private:
    std::vector<std::int16_t> m_vSteps;
};

/// How alike two openings are.
struct CShapeMatch {
    double m_dLikeness = 0.0;  // correlation of what both have; 0 when that is too short
    std::int32_t m_nShift = 0; // elements that the first one has before the second begins
};

/// The best match of `a` and `b` at shifts of at most `reach` around `shift`; the first of equals.
[[nodiscard]] CShapeMatch MatchShapes(COpeningShape const& a, COpeningShape const& b,
                                      std::int32_t shift, std::int32_t reach);

/// The best match at shifts of up to `kMostOpeningShift`.
[[nodiscard]] CShapeMatch MatchShapes(COpeningShape const& a, COpeningShape const& b);

/// The likeness at `shift` alone, of every eighth element: quick, and rough.
[[nodiscard]] double GlanceAtShapes(COpeningShape const& a, COpeningShape const& b,
                                    std::int32_t shift);
