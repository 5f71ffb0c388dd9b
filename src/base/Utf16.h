// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <string_view>

// Conversions between bytes and UTF-16 units, for `CString`.

/// Decodes UTF-8; nothing when it is not valid.
[[nodiscard]] std::optional<std::u16string> DecodeUtf8(std::string_view utf8);

/// True when every byte belongs to a valid character.
[[nodiscard]] bool IsUtf8(std::string_view text);

/// Encodes UTF-8; every lone surrogate becomes U+FFFD.
[[nodiscard]] std::string EncodeUtf8(std::u16string_view units);

/// Decodes UTF-8; a byte that is no part of it becomes the unit 0xDC00 + byte.
[[nodiscard]] std::u16string DecodePath(std::string_view bytes);

/// Gives the bytes back that `DecodePath` took. Lone surrogates that it never makes are encoded as
/// three bytes each.
[[nodiscard]] std::string EncodePath(std::u16string_view units);

/// Each code point by its simple lower-case mapping; lone surrogates stay.
[[nodiscard]] std::u16string LowerCase(std::u16string_view units);
