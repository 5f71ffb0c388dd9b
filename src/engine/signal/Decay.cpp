// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/signal/Decay.h"

#include <algorithm>
#include <bit>

namespace {

// Tuned: 0.4 s, several times what the bass filter takes to its rest.
constexpr std::size_t kMostSamples = 16384;

} // namespace

CThreeStates CDecay::StatesAt(std::size_t place) const {
    CThreeStates states;
    for (std::size_t i = 0; i < m_vW.size(); ++i) {
        states[2 * i] = m_vW[i][place + 1];
        states[2 * i + 1] = m_vW[i][place];
    }
    return states;
}

bool CDecay::HasStates(std::size_t place, CThreeStates const& states) const {
    return AreSame(StatesAt(place), states);
}

std::optional<std::size_t> CDecay::Find(CThreeStates const& states) const {
    auto const wanted = std::bit_cast<std::uint32_t>(states[0]);
    for (std::size_t place = 0; place < m_vOut.size(); ++place) {
        if (std::bit_cast<std::uint32_t>(m_vW[0][place + 1]) == wanted &&
            HasStates(place, states)) {
            return place;
        }
    }
    return std::nullopt;
}

bool CDecay::Replay(std::size_t place, CIIRLane const& lane, std::int32_t count) const {
    auto const samples = static_cast<std::size_t>(count);
    if (m_vOut.size() < place + samples || !HasStates(place, *lane.m_pState)) {
        return false;
    }
    std::copy_n(m_vOut.begin() + static_cast<std::ptrdiff_t>(place), samples, lane.m_pOut);
    *lane.m_pState = StatesAt(place + samples);
    return true;
}

void CDecay::Start(CThreeStates const& states) {
    m_vOut.clear();
    for (std::size_t i = 0; i < m_vW.size(); ++i) {
        m_vW[i].assign({states[2 * i + 1], states[2 * i]});
    }
}

bool CDecay::Continues(CThreeStates const& states) const {
    return !m_vW[0].empty() && m_vOut.size() < kMostSamples && HasStates(m_vOut.size(), states);
}

void CDecay::Extend(std::int32_t count) {
    m_nNew = static_cast<std::size_t>(count);
    m_vOut.resize(m_vOut.size() + m_nNew);
    for (std::vector<float>& states : m_vW) {
        states.resize(states.size() + m_nNew);
    }
}
