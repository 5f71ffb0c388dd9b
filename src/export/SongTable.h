// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>
#include <vector>

struct CColumn;
struct CTakenSong;

/// How a table of songs is written.
struct CTableShape {
    std::vector<CColumn const*> m_vColumns;
    char m_cDelimiter = ',';
    bool m_bMark = false; // begins with a byte order mark, by which spreadsheets know UTF-8
};

/// Songs as character-separated values by RFC 4180, names of the columns first; lines end as on
/// this system. Paths keep their bytes.
[[nodiscard]] std::string SongTableOf(std::span<CTakenSong const> songs, CTableShape const& shape);
