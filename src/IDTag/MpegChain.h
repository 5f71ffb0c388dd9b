// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// True when MPEG audio begins at `offset` of the open file: three frame headers in a row, each
/// where the one before says that the next frame lies, or as many as there are when the sound ends
/// before that. Further tags and zeros before it are passed over, and so are the remains of a frame
/// that was cut through. Files of other kinds that hold MPEG audio don't count: by their first
/// bytes they are known.
///
/// A look of some kilobytes that decodes nothing; it can be wrong about a file that is damaged at
/// its start.
bool HasMpegChain(int file, std::uint64_t offset);

/// True when a file of another kind begins at `offset` of the open file, or behind further tags and
/// zeros there: an archive of songs or a page with one in it, which decoders read as the song.
bool HasOtherKind(int file, std::uint64_t offset);

/// True when an MP4 file's first box lies at `offset`. Its tables hold positions from the beginning
/// of the file, which bytes put before them would make wrong.
bool IsMp4At(int file, std::uint64_t offset);
