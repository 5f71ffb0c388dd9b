// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/HeardSong.h"
#include "song/SongTags.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// What was read of a song's tags.
struct CReadTags {
    CShownTags m_shown;
    CString m_sTempoFrame; // the ID3v2 tag's tempo alone, which a write is held against

    bool operator==(CReadTags const&) const = default;
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
