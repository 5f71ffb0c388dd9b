// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// Length in bytes that the header of an MPEG layer III frame gives for the frame, header and
/// padding included. Returns: nothing when `bytes` doesn't begin with such a header, or with one
/// that leaves the bit rate open.
std::optional<std::size_t> MpegFrameBytes(std::span<std::uint8_t const> bytes);
