// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD"; // Standard: U+FFFD.
inline constexpr std::string_view kEllipsis = "\xE2\x80\xA6";             // Standard: U+2026.

/// One character of a UTF-8 text, or one byte that belongs to none.
struct CCharacter {
    std::int32_t m_nCodePoint = 0;
    std::size_t m_nBytes = 1;
    bool m_bValid = false;
};

/// The character that `text`, which is not empty, begins with.
CCharacter FirstCharacter(std::string_view text);

/// True for C0 and C1 controls, delete, the line and paragraph separators and the marks that
/// turn the direction of writing.
bool IsControl(std::int32_t codePoint);

/// Terminal cells that a printable text takes: two for wide characters, none for combining ones.
std::size_t DisplayWidth(std::string_view text);

/// `text` cut to at most `width` cells, the last of them an ellipsis when something was cut.
std::string CutToWidth(std::string_view text, std::size_t width);

/// The same with the end of `text` kept: an ellipsis comes first when something was cut.
std::string CutStartToWidth(std::string_view text, std::size_t width);
