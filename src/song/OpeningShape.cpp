// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Levels become logarithms, three of them a smooth one, and each loses the mean of the half second
// around it. Whole numbers throughout, so that the same levels give the same bits.

#include "song/OpeningShape.h"

#include "song/PlainMath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace {

constexpr std::size_t kLevels = 256;              // Fixed: of a byte.
constexpr float kStepsPerOctave = 8.0f;           // Tuned: SameSongsTest, as the next six.
constexpr std::int32_t kHalfMeanElements = 43;    // 0.25 s
constexpr std::int32_t kStrokeElements = 6;       // 35 ms: the rise of a stroke
constexpr std::int32_t kAnchorReachElements = 40; // 0.23 s: the highest of these is an anchor
constexpr std::int64_t kLeastRise = 36;           // a quarter of an octave in each element
constexpr std::int32_t kBinElements = 12;         // 70 ms: a step of the code
constexpr std::int32_t kCodeBins = 32;
constexpr std::int32_t kFewestElements = 512; // Fixed: 3 s, for a likeness that means something.
constexpr std::int32_t kGlanceStep = 8;       // Fixed: every eighth element is enough to glance at.

std::array<std::int32_t, kLevels> MakeLogarithms() {
    std::array<std::int32_t, kLevels> steps{};
    for (std::size_t i = 0; i < kLevels; ++i) {
        float const octaves = PlainLog2(1.0f + static_cast<float>(i));
        steps[i] = static_cast<std::int32_t>(std::lround(octaves * kStepsPerOctave));
    }
    return steps;
}

/// sums[i] is the sum of the first i values.
template <typename Values>
std::vector<std::int64_t> SumsOf(Values const& values) {
    std::vector<std::int64_t> sums(values.size() + 1, 0);
    for (std::size_t i = 0; i < values.size(); ++i) {
        sums[i + 1] = sums[i] + values[i];
    }
    return sums;
}

std::int64_t SumBetween(std::vector<std::int64_t> const& sums, std::int32_t from, std::int32_t to) {
    auto const last = static_cast<std::int32_t>(sums.size()) - 1;
    return sums[static_cast<std::size_t>(std::clamp(to, 0, last))] -
           sums[static_cast<std::size_t>(std::clamp(from, 0, last))];
}

/// Correlation of every `step`th pair of a[i] and b[i].
double Correlation(std::int16_t const* a, std::int16_t const* b, std::int32_t n,
                   std::int32_t step) {
    std::int64_t count = 0;
    std::int64_t sumA = 0;
    std::int64_t sumB = 0;
    std::int64_t squaresA = 0;
    std::int64_t squaresB = 0;
    std::int64_t products = 0;
    for (std::int32_t i = 0; i < n; i += step) {
        std::int64_t const x = a[i];
        std::int64_t const y = b[i];
        sumA += x;
        sumB += y;
        squaresA += x * x;
        squaresB += y * y;
        products += x * y;
        ++count;
    }
    std::int64_t const spreadA = count * squaresA - sumA * sumA;
    std::int64_t const spreadB = count * squaresB - sumB * sumB;
    if (spreadA <= 0 || spreadB <= 0) {
        return 0.0;
    }
    return static_cast<double>(count * products - sumA * sumB) /
           (std::sqrt(static_cast<double>(spreadA)) * std::sqrt(static_cast<double>(spreadB)));
}

double LikenessAt(COpeningShape const& a, COpeningShape const& b, std::int32_t shift,
                  std::int32_t step) {
    auto const sizeA = static_cast<std::int32_t>(a.Steps().size());
    auto const sizeB = static_cast<std::int32_t>(b.Steps().size());
    std::int32_t const fromA = std::max(shift, 0);
    std::int32_t const fromB = std::max(-shift, 0);
    std::int32_t const n = std::min(sizeA - fromA, sizeB - fromB);
    return n < kFewestElements
               ? 0.0
               : Correlation(a.Steps().data() + fromA, b.Steps().data() + fromB, n, step);
}

} // namespace

COpeningShape::COpeningShape(std::span<std::uint8_t const> levels) {
    static std::array<std::int32_t, kLevels> const kLogarithms = MakeLogarithms();
    auto const size = static_cast<std::int32_t>(levels.size());
    std::vector<std::int32_t> smooth(levels.size());
    for (std::int32_t i = 0; i < size; ++i) {
        for (std::int32_t k = i - 1; k <= i + 1; ++k) {
            auto const near = static_cast<std::size_t>(std::clamp(k, 0, size - 1));
            smooth[static_cast<std::size_t>(i)] += kLogarithms[levels[near]];
        }
    }
    std::vector<std::int64_t> const sums = SumsOf(smooth);
    m_vSteps.resize(levels.size());
    for (std::int32_t i = 0; i < size; ++i) {
        std::int32_t const from = std::max(i - kHalfMeanElements, 0);
        std::int32_t const to = std::min(i + kHalfMeanElements, size);
        std::int64_t const mean = SumBetween(sums, from, to) / (to - from);
        m_vSteps[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(
            std::clamp<std::int64_t>(smooth[static_cast<std::size_t>(i)] - mean, -127, 127));
    }
}

std::vector<std::int32_t> COpeningShape::Anchors() const {
    std::vector<std::int64_t> const sums = SumsOf(m_vSteps);
    auto const size = static_cast<std::int32_t>(m_vSteps.size());
    std::vector<std::int64_t> rises(m_vSteps.size(), 0);
    for (std::int32_t i = kStrokeElements; i < size - kStrokeElements; ++i) {
        rises[static_cast<std::size_t>(i)] =
            SumBetween(sums, i, i + kStrokeElements) - SumBetween(sums, i - kStrokeElements, i);
    }
    std::vector<std::int32_t> anchors;
    for (std::int32_t i = kStrokeElements; i < size - kStrokeElements; ++i) {
        auto const at = rises.begin() + i;
        if (*at < kLeastRise || *at < *(at - 1) || *at < *(at + 1)) {
            continue; // which is most of them, and quickly seen
        }
        auto const from = rises.begin() + std::max(i - kAnchorReachElements, 0);
        auto const to = rises.begin() + std::min(i + kAnchorReachElements + 1, size);
        if (*at == *std::max_element(from, to)) {
            anchors.push_back(i);
        }
    }
    return anchors;
}

std::uint32_t COpeningShape::CodeAt(std::int32_t anchor, bool* isThere) const {
    auto const size = static_cast<std::int32_t>(m_vSteps.size());
    *isThere = anchor >= 0 && anchor + kBinElements * (kCodeBins + 1) <= size;
    std::uint32_t code = 0;
    std::int64_t before = 0;
    for (std::int32_t bin = 0; bin <= kCodeBins && *isThere; ++bin) {
        auto const first = m_vSteps.begin() + anchor + std::ptrdiff_t{bin} * kBinElements;
        std::int64_t const sum = std::accumulate(first, first + kBinElements, std::int64_t{0});
        code = bin == 0 ? 0U : code << 1U | (sum > before ? 1U : 0U);
        before = sum;
    }
    return code;
}

CShapeMatch MatchShapes(COpeningShape const& a, COpeningShape const& b, std::int32_t shift,
                        std::int32_t reach) {
    CShapeMatch best{.m_dLikeness = LikenessAt(a, b, shift, 1), .m_nShift = shift};
    for (std::int32_t near = shift - reach; near <= shift + reach; ++near) {
        double const likeness = LikenessAt(a, b, near, 1);
        if (likeness > best.m_dLikeness) {
            best = {.m_dLikeness = likeness, .m_nShift = near};
        }
    }
    return best;
}

CShapeMatch MatchShapes(COpeningShape const& a, COpeningShape const& b) {
    std::int32_t best = 0;
    double most = 0.0;
    for (std::int32_t shift = -kMostOpeningShift; shift <= kMostOpeningShift; ++shift) {
        double const likeness = GlanceAtShapes(a, b, shift);
        if (likeness > most) {
            most = likeness;
            best = shift;
        }
    }
    return MatchShapes(a, b, best, kGlanceStep);
}

double GlanceAtShapes(COpeningShape const& a, COpeningShape const& b, std::int32_t shift) {
    return LikenessAt(a, b, shift, kGlanceStep);
}
