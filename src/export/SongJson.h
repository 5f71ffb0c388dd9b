// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

struct CTakenSong;

/// Which fields of the record are told, by their names.
struct CSongJsonWishes {
    /// Beside the usual ones: of "halfBeats", "fingerprint", "envelopes" and "samples".
    std::vector<std::string> m_vMore = {};
    /// These alone, with the path and the error; empty: the usual ones.
    std::vector<std::string> m_vOnly = {};

    /// True when the field is asked for by its name.
    [[nodiscard]] bool Names(std::string_view field) const;
};

/// The record of a song, "tactus-song-1", as one JSON object on one line without a line end. Equal
/// songs give equal bytes. With `m_vOnly` it isn't that record, and doesn't say so.
/// Units: seconds with six decimals at most.
[[nodiscard]] std::string SongJson(CTakenSong const& song, CSongJsonWishes const& wishes = {});

/// The names of all fields, in their order.
[[nodiscard]] std::vector<std::string_view> SongJsonFields();
