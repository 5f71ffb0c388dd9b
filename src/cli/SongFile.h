// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What tells whether a file is still the one that it was: times in nanoseconds since the epoch.
struct CFileState {
    std::uint64_t m_nDevice = 0;
    std::uint64_t m_nInode = 0;
    std::int64_t m_nBytes = 0;
    std::int64_t m_nContentTime = 0;
    std::int64_t m_nAttributeTime = 0;

    bool operator==(CFileState const&) const = default;
};

/// The state of what `path` names, links followed; nothing when there is nothing.
std::optional<CFileState> StateOf(std::string const& path);

/// A text that is the same for all names of one file and for no other file, as long as nobody
/// moves it; also when a new version takes its place meanwhile. Empty when there is no file.
std::string SongKey(std::string const& path);
