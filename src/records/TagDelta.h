// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// The way from one tag's bytes to another's, as pieces to be copied from the one and bytes that it
/// doesn't have. Two tags of the same frames are a few dozen bytes apart, whatever the size of
/// their pictures.
std::vector<std::uint8_t> MakeDelta(std::span<std::uint8_t const> from,
                                    std::span<std::uint8_t const> wanted);

/// What `delta`, which may be any bytes, makes of `from`.
/// Returns: nothing when it doesn't lead to exactly `wantedBytes` bytes.
std::optional<std::vector<std::uint8_t>> ApplyDelta(std::span<std::uint8_t const> from,
                                                    std::span<std::uint8_t const> delta,
                                                    std::uint64_t wantedBytes);
