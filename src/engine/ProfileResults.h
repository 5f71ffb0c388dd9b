// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/VectorArray.h"
#include "engine/beats/BeatPattern.h"

#include <cstdint>
#include <string>

class CPfImpactPoints;
class IArchive;

/// The record of one run: tempo, key, measure marks, beat patterns, mix points and the fade curve
/// against the previous song. A plain value.
/// Units: positions in samples at `GetSampleRate`, once `SetSampleRate` has run; times in
/// microseconds; attenuations in units of which 600 lie between two fade points.
/// Thread: one thread at a time.
class CProfileResults {
public:
    using CPositions = CVectorArray<std::int64_t>;

    CProfileResults() = default;

    void AddIntroFadePoint(std::uint64_t position);
    void AddIntroBeatMixSproc(std::uint64_t position);
    void AddOutroBeatMixSproc(std::uint64_t position);

    /// Empties both sprocket lists.
    void EraseBeatMixSprocs();

    /// Replaces the measure marks by the list's measure-start marks, in their order.
    void AddMeasMarks(CPfImpactPoints const* points);

    void AddBeatPatterns(CPfBeatPattern const* a, CPfBeatPattern const* b);

    /// Copies both patterns out. Returns: true.
    bool GetBeatPatterns(CPfBeatPattern* a, CPfBeatPattern* b) const;

    void SetKey(std::uint16_t tonic, std::uint16_t mode);

    /// Tonic as pitch class (0 is C), mode 0 none, 1 minor, 2 major. Returns: true.
    bool GetKey(std::uint16_t* tonic, std::uint16_t* mode) const;

    /// True and the mark for 0 <= index < count; else false, `position` untouched.
    bool EnumMeasMarks(std::int32_t index, std::int64_t* position) const;

    /// The beat-matched mix points as one sequence, intro sprockets first. False past the end, the
    /// outputs untouched.
    bool EnumBeatMixSprocs(std::uint16_t index, std::int64_t* position, bool* isIntro) const;

    /// The plain mix points: index 0 the intro's end, index 1 the outro's start; else false.
    bool EnumStdMixSprocs(std::uint16_t index, std::int64_t* position, bool* isIntro) const;

    /// True when rate, sample count and tempo are set and both sprocket lists and the fade points
    /// have an entry. Measure marks are not asked for.
    [[nodiscard]] bool IsValid() const;

    /// pos * newRate / oldRate, truncated toward zero, with a product that wraps at 64 bits; `pos`
    /// when the rates are equal, else 0 when the old rate is 0.
    [[nodiscard]] static std::int64_t TranslateSamplePos(std::uint32_t newRate,
                                                         std::uint32_t oldRate, std::int64_t pos);
    static void TranslateSamplePos(std::uint32_t newRate, std::uint32_t oldRate,
                                   CPositions& positions);

    /// Stores `newRate` and translates every position from `oldRate`. The sample count stays: it
    /// is in the file's samples already.
    void SetSampleRate(std::uint32_t newRate, std::uint32_t oldRate);

    /// Attenuation of the previous song at `time`: 0 before the first fade point, -600 * i at point
    /// i and straight between. False, `atten` untouched, for a negative time, from the last point
    /// on, and for fewer than two points unless the first lies ahead.
    bool GetPrevSongAttenAtFilePos(std::int64_t time, std::int32_t* atten) const;

    /// Time at which the previous song has the attenuation `atten`; that of point 0 for 0 and
    /// above. False, `time` untouched, below the last point's, without points, or without a rate.
    bool GetFilePosFromPrevSongAtten(std::int32_t atten, std::int64_t* time) const;

    /// Equal in every field, floats by ordinary comparison.
    [[nodiscard]] bool operator==(CProfileResults const& other) const;

    /// Loads or stores `list` by the archive's direction: a 4-byte count, then 8 bytes an element.
    /// A loaded list is empty when the count is negative or claims more than 2^20 elements.
    static void Serialize(IArchive* archive, CPositions& list);

    [[nodiscard]] CPositions const& GetIntroSprockets() const { return m_vIntroSprockets; }
    [[nodiscard]] CPositions const& GetOutroSprockets() const { return m_vOutroSprockets; }
    [[nodiscard]] CPositions const& GetIntroFadePoints() const { return m_vIntroFadePoints; }
    [[nodiscard]] CPositions const& GetMeasMarks() const { return m_vMeasMarks; }

    [[nodiscard]] std::int64_t GetIntroEnd() const { return m_nIntroEnd; }
    void SetIntroEnd(std::int64_t position) { m_nIntroEnd = position; }
    [[nodiscard]] std::int64_t GetOutroStart() const { return m_nOutroStart; }
    void SetOutroStart(std::int64_t position) { m_nOutroStart = position; }
    [[nodiscard]] float GetBpm() const { return m_fBpm; }
    void SetBpm(float bpm) { m_fBpm = bpm; }
    [[nodiscard]] std::uint32_t GetSampleRate() const { return m_nSampleRate; }
    [[nodiscard]] std::int64_t GetSampleCount() const { return m_nSampleCount; }
    void SetSampleCount(std::int64_t count) { m_nSampleCount = count; }
    [[nodiscard]] std::uint32_t GetBitRate() const { return m_nBitRate; }
    void SetBitRate(std::uint32_t bitsPerSecond) { m_nBitRate = bitsPerSecond; }

    /// Loudest running measure average of the smoothed envelope.
    [[nodiscard]] float GetPeakLevel() const { return m_fPeakLevel; }
    void SetPeakLevel(float level) { m_fPeakLevel = level; }

    /// Two figures and a text that a caller may keep with the record; no run sets them.
    [[nodiscard]] float GetFirstExtra() const { return m_fFirstExtra; }
    [[nodiscard]] float GetSecondExtra() const { return m_fSecondExtra; }
    void SetExtras(float first, float second);
    [[nodiscard]] std::wstring const& GetText() const { return m_sText; }
    void SetText(std::wstring text);

private:
    CPositions m_vIntroSprockets;
    CPositions m_vOutroSprockets;
    CPositions m_vIntroFadePoints;
    CPositions m_vMeasMarks;
    std::int64_t m_nIntroEnd = 0;
    std::int64_t m_nOutroStart = 0;
    float m_fBpm = 0.0f;
    std::uint32_t m_nSampleRate = 0;
    float m_fPeakLevel = 0.0f;
    float m_fFirstExtra = 0.0f;
    float m_fSecondExtra = 0.0f;
    std::int64_t m_nSampleCount = 0;
    std::uint16_t m_nTonic = 0;
    std::uint16_t m_nMode = 0;
    CPfBeatPattern m_patternA;
    CPfBeatPattern m_patternB;
    std::uint32_t m_nBitRate = 0;
    std::wstring m_sText;
};
