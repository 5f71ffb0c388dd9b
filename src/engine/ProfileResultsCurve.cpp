// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The record's positions at another rate, and the fade curve against the previous song.

#include "engine/ProfileResults.h"

namespace {

constexpr std::int32_t kFadeStep = 600;             // Fixed: attenuation between two fade points.
constexpr std::uint64_t kMicrosPerSecond = 1000000; // Standard: SI prefix.

/// a * b, wrapping at 64 bits.
std::uint64_t MultiplyWrapped(std::int64_t a, std::uint64_t b) {
    return static_cast<std::uint64_t>(a) * b;
}

/// a + b, wrapping at 64 bits.
std::int64_t AddWrapped(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

/// The low 32 bits of the distance from `from` to `to`.
std::int32_t LowDistance(std::int64_t from, std::int64_t to) {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(to) -
                                     static_cast<std::uint64_t>(from));
}

/// a * b, wrapping at 32 bits.
std::int32_t MultiplyWrapped32(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// a / b, truncated, for b other than 0. The one quotient that 32 bits can't hold wraps.
std::int32_t DivideWrapped32(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(std::int64_t{a} / b);
}

/// a + b, wrapping at 32 bits.
std::int32_t AddWrapped32(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

/// Attenuation at fade point `index`.
std::int32_t AttenuationAt(std::size_t index) {
    return MultiplyWrapped32(-kFadeStep, static_cast<std::int32_t>(index));
}

} // namespace

std::int64_t CProfileResults::TranslateSamplePos(std::uint32_t newRate, std::uint32_t oldRate,
                                                 std::int64_t pos) {
    if (newRate == oldRate) {
        return pos;
    }
    if (oldRate == 0) {
        return 0;
    }
    return static_cast<std::int64_t>(MultiplyWrapped(pos, newRate)) / std::int64_t{oldRate};
}

void CProfileResults::TranslateSamplePos(std::uint32_t newRate, std::uint32_t oldRate,
                                         CPositions& positions) {
    for (std::int64_t& position : positions) {
        position = TranslateSamplePos(newRate, oldRate, position);
    }
}

void CProfileResults::SetSampleRate(std::uint32_t newRate, std::uint32_t oldRate) {
    m_nSampleRate = newRate;
    TranslateSamplePos(newRate, oldRate, m_vIntroSprockets);
    TranslateSamplePos(newRate, oldRate, m_vOutroSprockets);
    TranslateSamplePos(newRate, oldRate, m_vIntroFadePoints);
    TranslateSamplePos(newRate, oldRate, m_vMeasMarks);
    m_nIntroEnd = TranslateSamplePos(newRate, oldRate, m_nIntroEnd);
    m_nOutroStart = TranslateSamplePos(newRate, oldRate, m_nOutroStart);
}

bool CProfileResults::GetPrevSongAttenAtFilePos(std::int64_t time, std::int32_t* atten) const {
    if (time < 0) {
        return false;
    }
    CPositions const& points = m_vIntroFadePoints;
    // Deliberate: a signed division here, unsigned ones on the way back.
    std::int64_t const position = static_cast<std::int64_t>(MultiplyWrapped(time, m_nSampleRate)) /
                                  static_cast<std::int64_t>(kMicrosPerSecond);
    if (!points.IsEmpty() && points[0] > position) {
        *atten = 0;
        return true;
    }
    for (std::size_t i = 0; i + 1 < points.GetCount(); ++i) {
        if (points[i] <= position && position < points[i + 1]) {
            std::int32_t const distance = LowDistance(points[i], points[i + 1]);
            std::int32_t const inside =
                MultiplyWrapped32(LowDistance(points[i], position), -kFadeStep);
            *atten = distance == 0
                         ? AttenuationAt(i)
                         : AddWrapped32(AttenuationAt(i), DivideWrapped32(inside, distance));
            return true;
        }
    }
    return false;
}

bool CProfileResults::GetFilePosFromPrevSongAtten(std::int32_t atten, std::int64_t* time) const {
    if (m_nSampleRate == 0) {
        return false;
    }
    CPositions const& points = m_vIntroFadePoints;
    if (atten >= 0 && !points.IsEmpty()) {
        *time =
            static_cast<std::int64_t>(MultiplyWrapped(points[0], kMicrosPerSecond) / m_nSampleRate);
        return true;
    }
    for (std::size_t i = 0; i + 1 < points.GetCount(); ++i) {
        std::int32_t const above = AttenuationAt(i);
        if (AttenuationAt(i + 1) <= atten && atten < above) {
            std::int32_t const product = MultiplyWrapped32(LowDistance(points[i], points[i + 1]),
                                                           AddWrapped32(atten, -above));
            std::int64_t const position =
                AddWrapped(points[i], MultiplyWrapped32(product, -1) / kFadeStep);
            *time = static_cast<std::int64_t>(MultiplyWrapped(position, kMicrosPerSecond) /
                                              m_nSampleRate);
            return true;
        }
    }
    return false;
}
