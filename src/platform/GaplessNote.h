// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// What an encoder notes under "iTunSMPB" about the padding of an AAC track.
/// Units: frames at the file's rate.
struct CGaplessNote {
    std::int64_t m_nDelay = 0;   // padding before the music
    std::int64_t m_nPadding = 0; // padding behind it
    std::int64_t m_nFrames = 0;  // the music itself
};

/// Reads the note: hexadecimal numbers with blanks between them, of which the second to the fourth
/// count. Returns: nothing when one is missing or is no number.
std::optional<CGaplessNote> ParseGaplessNote(std::string_view text);

/// Frames of music among `decoded` frames, which come behind `skippedStart` frames that were
/// already dropped. A track that ends before its music does has no padding to cut.
std::int64_t CountWithoutPadding(std::int64_t decoded, std::int64_t skippedStart,
                                 CGaplessNote const& note);
