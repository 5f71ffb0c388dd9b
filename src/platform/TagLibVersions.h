// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <taglib/flacfile.h>
#include <taglib/taglib.h>

// What is one thing in TagLib 1.13 and another in TagLib 2. For the sources that work with TagLib.

#if TAGLIB_MAJOR_VERSION >= 2
using TagOffset = TagLib::offset_t; // where a stream stands, and how long it is
using TagStart = TagLib::offset_t;  // where a change begins
using TagSize = std::size_t;        // of a piece
#else
using TagOffset = long;
using TagStart = unsigned long;
using TagSize = unsigned long;
#endif

/// The FLAC file in `stream`, which must outlive it; what its audio is like is left unread.
inline TagLib::FLAC::File FlacFileIn(TagLib::IOStream& stream) {
#if TAGLIB_MAJOR_VERSION >= 2
    return {&stream, false};
#else
    return {&stream, nullptr, false};
#endif
}
