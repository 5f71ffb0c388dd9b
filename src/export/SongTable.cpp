// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongTable.h"

#include "export/Columns.h"
#include "export/TakenSong.h"

#include <string_view>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // Standard: U+FEFF in UTF-8.

std::string Field(std::string_view text, char delimiter) {
    if (text.find_first_of(std::string("\"\r\n") + delimiter) == std::string_view::npos) {
        return std::string(text);
    }
    std::string quoted = "\"";
    for (char const c : text) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + "\"";
}

/// One line of what `textOf` says of each column.
template <typename Text>
void AddLine(std::string& table, CTableShape const& shape, Text textOf) {
    bool isFirst = true;
    for (CColumn const* const column : shape.m_vColumns) {
        table += isFirst ? "" : std::string(1, shape.m_cDelimiter);
        table += Field(textOf(*column), shape.m_cDelimiter);
        isFirst = false;
    }
    table += '\n';
}

} // namespace

std::string SongTableOf(std::span<CTakenSong const> songs, CTableShape const& shape) {
    std::string table(shape.m_bMark ? kByteOrderMark : "");
    AddLine(table, shape, [](CColumn const& column) { return std::string(column.m_sName); });
    for (CTakenSong const& song : songs) {
        AddLine(table, shape,
                [&](CColumn const& column) { return TextOf(column, column.m_pCellOf(song)); });
    }
    return table;
}
