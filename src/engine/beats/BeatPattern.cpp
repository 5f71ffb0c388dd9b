// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatPattern.h"

#include <algorithm>

void CPfBeatPattern::Initialize(std::int32_t beatCount) {
    m_vWeights.assign(static_cast<std::size_t>(std::max(beatCount, 0)), 0.0f);
}

float CPfBeatPattern::GetValue(std::int32_t i) const {
    return IsInside(i) ? m_vWeights[static_cast<std::size_t>(i)] : 0.0f;
}

void CPfBeatPattern::SetBeatWeight(std::int32_t i, float weight) {
    if (IsInside(i)) {
        m_vWeights[static_cast<std::size_t>(i)] = weight;
    }
}

std::int32_t CPfBeatPattern::GetCount() const {
    return static_cast<std::int32_t>(m_vWeights.size());
}

bool CPfBeatPattern::operator==(CPfBeatPattern const& other) const {
    return m_vWeights == other.m_vWeights;
}

bool CPfBeatPattern::IsInside(std::int32_t i) const {
    return i >= 0 && i < GetCount();
}
