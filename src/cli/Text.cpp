// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Text.h"

#include <algorithm>
#include <utf8proc.h>

CCharacter FirstCharacter(std::string_view text) {
    utf8proc_int32_t codePoint = 0;
    utf8proc_ssize_t const used =
        utf8proc_iterate(reinterpret_cast<utf8proc_uint8_t const*>(text.data()),
                         static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    if (used <= 0) {
        return {};
    }
    return {codePoint, static_cast<std::size_t>(used), true};
}

bool IsControl(std::int32_t codePoint) {
    switch (utf8proc_category(codePoint)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return true;
    default:
        break;
    }
    // Standard: Unicode Bidirectional Algorithm (UAX #9), section 2: embeddings and isolates.
    return (codePoint >= 0x202A && codePoint <= 0x202E) ||
           (codePoint >= 0x2066 && codePoint <= 0x2069);
}

namespace {

std::size_t CellsOf(CCharacter const& character) {
    if (!character.m_bValid) {
        return 1;
    }
    return static_cast<std::size_t>(std::max(0, utf8proc_charwidth(character.m_nCodePoint)));
}

} // namespace

std::size_t DisplayWidth(std::string_view text) {
    std::size_t cells = 0;
    while (!text.empty()) {
        CCharacter const character = FirstCharacter(text);
        cells += CellsOf(character);
        text.remove_prefix(character.m_nBytes);
    }
    return cells;
}

std::string CutToWidth(std::string_view text, std::size_t width) {
    if (DisplayWidth(text) <= width) {
        return std::string(text);
    }
    if (width == 0) {
        return {};
    }
    std::size_t kept = 0;
    std::size_t cells = 0;
    while (kept < text.size()) {
        CCharacter const character = FirstCharacter(text.substr(kept));
        if (cells + CellsOf(character) > width - 1) {
            break;
        }
        cells += CellsOf(character);
        kept += character.m_nBytes;
    }
    return std::string(text.substr(0, kept)) + std::string(kEllipsis);
}

std::string CutStartToWidth(std::string_view text, std::size_t width) {
    std::size_t cells = DisplayWidth(text);
    if (cells <= width) {
        return std::string(text);
    }
    while (!text.empty() && cells + 1 > width) {
        CCharacter const character = FirstCharacter(text);
        cells -= CellsOf(character);
        text.remove_prefix(character.m_nBytes);
    }
    return width == 0 ? std::string() : std::string(kEllipsis) + std::string(text);
}
