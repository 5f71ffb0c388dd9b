// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/OtherTags.h"
#include "platform/SourceFile.h"

#include <cstdint>

// The readers of single kinds, for `ReadOtherTags`. Each adds what it finds.

/// RIFF/WAVE and AIFF: texts of their own chunks, and the ID3v2 tag that one of them may hold.
void ReadChunkTags(CSourceFile& source, COtherTags& tags);

/// The attributes of a Windows Media file, whose first byte lies at `begin`.
void ReadAsfTags(CSourceFile& source, std::int64_t begin, COtherTags& tags);

/// Whatever the decoding library tells of a container without listening: Matroska, CAF, AU,
/// QuickTime. Only texts that are still empty are filled.
void ReadContainerTags(CSourceFile& source, COtherTags& tags);

/// Reads up to `size` bytes at `place`; fewer at the end.
std::vector<std::uint8_t> ReadPiece(CSourceFile& source, std::int64_t place, std::int64_t size);
