// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/NoteOracle.h"

#include "base/TimeUtil.h"

#include <algorithm>
#include <cmath>

std::vector<std::int32_t> const kOraclePeriods = {1348, 1272, 1201, 1133, 1070, 1010, 953, 900,
                                                  849,  801,  756,  714,  674,  636,  600, 566,
                                                  535,  505,  476,  450,  424,  400,  378, 357};

void COracleMap::Add(std::uint32_t note, std::int64_t time, float strength) {
    if (m_vNotes.empty() || strength < m_fSmallest) {
        m_vNotes.push_back({note, time, strength});
        m_fSmallest = strength;
        return;
    }
    std::size_t low = 0;
    std::size_t high = m_vNotes.size() - 1;
    while (high - low > 1) {
        std::size_t const middle = (low + high) / 2;
        if (strength < m_vNotes[middle].m_fStrength) {
            low = middle;
        } else {
            high = middle;
        }
    }
    m_vNotes.insert(m_vNotes.begin() + static_cast<std::ptrdiff_t>(high), {note, time, strength});
}

void COracleMap::Prune(std::int64_t window) {
    std::vector<COracleNote> kept;
    for (COracleNote const& note : m_vNotes) {
        bool const isNear = std::ranges::any_of(kept, [&](COracleNote const& other) {
            return other.m_nTime >= note.m_nTime - window && other.m_nTime <= note.m_nTime + window;
        });
        if (!isNear) {
            kept.push_back(note);
        }
    }
    m_vNotes = kept;
}

void OracleSearch(float const* samples, std::int32_t scanCount, std::int32_t dataCount,
                  std::int64_t basePos, COracleMap* map) {
    std::int32_t const last = dataCount - 1;
    for (std::int32_t i = 1; i < scanCount; ++i) {
        if (!(samples[i - 1] < 0.0f && samples[i] >= 0.0f)) {
            continue;
        }
        float peak = 0.0f;
        for (std::int32_t k = i; k < std::min(i + 1348, last); k += 8) {
            peak = std::max(peak, samples[k]);
        }
        if (peak < 0.01f) {
            continue;
        }
        for (std::size_t note = 0; note < kOraclePeriods.size(); ++note) {
            std::int32_t const period = kOraclePeriods[note];
            std::int32_t const end = std::min(i + period, last);
            float sum = 0.0f;
            std::int32_t count = 0;
            std::int32_t j = i;
            for (;; ++j) {
                bool failed = false;
                for (std::int32_t m = 1; m <= 4 && j + m * period <= last && !failed; ++m) {
                    float const difference = std::fabs(samples[j] - samples[j + m * period]);
                    sum += difference;
                    ++count;
                    failed = difference > 0.6f * peak;
                }
                if (failed || j >= end) {
                    break;
                }
            }
            if (j >= end) {
                map->Add(static_cast<std::uint32_t>(note), SamplePosToTime(basePos + i, 44100),
                         1.0f - sum / static_cast<float>(count) * 0x1.0p-16f);
            }
        }
    }
}

void OracleStream(std::vector<float> const& filtered, COracleMap* map) {
    auto const whole = static_cast<std::int32_t>(filtered.size() / 256 * 256);
    std::int32_t base = 0;
    for (; whole - base > 61439; base += 32768) {
        // Frames of 256 bring the fill to 61440 exactly.
        OracleSearch(filtered.data() + base, 32768, 61440, base, map);
    }
    OracleSearch(filtered.data() + base, whole - base, whole - base, base, map);
}
