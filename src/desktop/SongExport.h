// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/TakenSong.h"

#include <span>
#include <string>

/// What songs are exported as with all that was heard of them.
enum class ESongFormat {
    Rekordbox, ///< A collection with beat grids.
    Playlist,  ///< Extended M3U.
    Record,    ///< JSON, one record a line.
    Labels,    ///< From here on each song has a file of its own: a label track of Audacity,
    Midi,      ///< a tempo map,
    Jams,      ///< annotations
    Drawing,   ///< and an SVG picture.
};

/// True when each song gets a file of its own.
[[nodiscard]] bool IsOneASong(ESongFormat format);

/// True when songs need their envelopes for it.
[[nodiscard]] bool NeedsEnvelopes(ESongFormat format);

/// "xml": what the names of such files end in.
[[nodiscard]] char const* EndingOf(ESongFormat format);

/// The songs as one file, of a format that has one for all; or the only one of them as its own.
/// Empty for a song that has nothing to be written. `version` is that of the program.
[[nodiscard]] std::string SongsText(std::span<CTakenSong const> songs, ESongFormat format,
                                    std::string const& version);
