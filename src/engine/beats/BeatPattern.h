// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// Weights of the steps of one measure; index 0 is the downbeat. A plain value.
class CPfBeatPattern {
public:
    CPfBeatPattern() = default;
    CPfBeatPattern(CPfBeatPattern const&) = default;
    CPfBeatPattern& operator=(CPfBeatPattern const&) = default;
    virtual ~CPfBeatPattern() = default;

    /// Replaces the weights by `beatCount` zeros; none for a negative count.
    void Initialize(std::int32_t beatCount);

    /// Weight i; 0 outside [0, count).
    [[nodiscard]] float GetValue(std::int32_t i) const;

    /// Sets weight i; ignored outside [0, count).
    void SetBeatWeight(std::int32_t i, float weight);

    [[nodiscard]] std::int32_t GetCount() const;
    [[nodiscard]] std::vector<float> const& GetWeights() const { return m_vWeights; }

    /// Same length and exactly equal weights.
    [[nodiscard]] bool operator==(CPfBeatPattern const& other) const;

private:
    [[nodiscard]] bool IsInside(std::int32_t i) const;

    std::vector<float> m_vWeights;
};
