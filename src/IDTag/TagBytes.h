// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// The number forms of tag and frame headers. Every function reads or writes exactly four bytes.

/// Standard: ID3v2.3.0, section 3.3: plain big-endian.
std::uint32_t ReadBigEndian(std::uint8_t const* bytes);
void WriteBigEndian(std::uint32_t value, std::uint8_t* bytes);

/// Standard: ID3v2.3.0, section 3.1: four bytes of 7 bits each, most significant first.
/// Returns: the sum of the bytes at their places; a byte of 128 or more counts in full, so that
/// FF FF FF FF is 538,984,575.
std::uint32_t ReadSyncsafe(std::uint8_t const* bytes);

/// Keeps the low 28 bits of `value`.
void WriteSyncsafe(std::uint32_t value, std::uint8_t* bytes);

/// Takes out, in place, every 00 that directly follows an FF, and lowers `*length` by one for
/// each. One pass over the bytes as they were: of FF 00 00 the last 00 stays.
void RemoveUnsynchronization(std::uint8_t* bytes, std::uint32_t* length);
