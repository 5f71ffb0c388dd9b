// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr std::size_t kOtherKindBytes = 262; // Fixed: where the marks that are known end.

/// True when `mark` stands at `at` among the bytes.
bool BeginsWith(std::span<std::uint8_t const> bytes, std::size_t at, std::string_view mark);

/// True for the first bytes of files that may hold MPEG audio near their beginning, or as one of
/// their packets, and that a tag in front would break.
bool IsOfOtherKind(std::span<std::uint8_t const> bytes);
