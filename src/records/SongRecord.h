// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AnalysisProblem.h"
#include "song/SongTags.h"
#include "song/TempoCandidates.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What was read of a song's tags.
struct CReadTags {
    CShownTags m_shown;
    CString m_sTempoFrame; // the ID3v2 tag's tempo alone, which a write is held against

    bool operator==(CReadTags const&) const = default;
};

/// What one hearing of a song brought, as far as it is told of again.
struct CHeardSong {
    CAnalysisOutcome m_outcome;
    std::string m_sTempo;                         // "%3.2f", as it goes into tags
    std::optional<CTempoCandidates> m_candidates; // once they were asked for

    bool operator==(CHeardSong const&) const = default;
};

/// All that is kept of a song. Parts that aren't known yet are nothing.
struct CSongRecord {
    std::optional<CReadTags> m_tags;
    std::optional<CHeardSong> m_heard;

    bool operator==(CSongRecord const&) const = default;
};

/// The byte form, little-endian: a form number, then the fields in their order.
std::vector<std::uint8_t> BytesOf(CSongRecord const& record);

/// Returns: nothing for bytes of another form, or cut short, or with bytes left over.
std::optional<CSongRecord> SongRecordOf(std::span<std::uint8_t const> bytes);
