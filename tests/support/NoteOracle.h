// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

// The bass note search and the order of its notes, spelled out over plain vectors: slow, and
// independent of the engine's own.

struct COracleNote {
    std::uint32_t m_nNote;
    std::int64_t m_nTime;
    float m_fStrength;
};

/// Note list with a vector insertion for each note and a pruning that compares all pairs.
class COracleMap {
public:
    void Add(std::uint32_t note, std::int64_t time, float strength);
    void Prune(std::int64_t window);
    [[nodiscard]] std::vector<COracleNote> const& GetNotes() const { return m_vNotes; }

private:
    std::vector<COracleNote> m_vNotes;
    float m_fSmallest = 0.0f;
};

/// The periods of the 24 notes in samples, as a list of numbers.
extern std::vector<std::int32_t> const kOraclePeriods;

/// Searches samples[0, dataCount) at crossings 1 .. scanCount - 1.
void OracleSearch(float const* samples, std::int32_t scanCount, std::int32_t dataCount,
                  std::int64_t basePos, COracleMap* map);

/// The whole road of a filtered stream that arrives in frames of 256 samples: strides of 32768
/// while 61440 samples are there, the rest at the end, no pruning. A last incomplete frame never
/// arrives.
void OracleStream(std::vector<float> const& filtered, COracleMap* map);
