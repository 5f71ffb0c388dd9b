// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

struct CTakenSong;

/// What a column has for a song: nothing, a number or a text.
using CCell = std::variant<std::monostate, double, std::string>;

constexpr int kTexts = -1; // Fixed: instead of decimals.

/// One thing that tables tell of songs, and that songs are chosen and sorted by.
struct CColumn {
    std::string_view m_sName;
    int m_nDecimals; // of its numbers; `kTexts` for a column of texts
    CCell (*m_pCellOf)(CTakenSong const& song);
};

/// All columns in their order.
[[nodiscard]] std::span<CColumn const> Columns();

/// Null when there is none of this name.
[[nodiscard]] CColumn const* FindColumn(std::string_view name);

/// A cell as a text: numbers with the column's decimals and a point; empty for nothing.
[[nodiscard]] std::string TextOf(CColumn const& column, CCell const& cell);
