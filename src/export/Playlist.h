// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>

struct CTakenSong;

constexpr char kPlaylistMark[] = "# made by Tactus"; // Fixed: the second line, a comment.

/// An extended M3U playlist in UTF-8: before each song a line "#EXTINF:SECONDS,ARTIST - TITLE", the
/// file's name where there is no title. Paths are absolute, or from the folder `from` where that
/// isn't empty; one that is no UTF-8 or holds a line end is a file URI. Songs that couldn't be
/// heard are left out.
[[nodiscard]] std::string PlaylistOf(std::span<CTakenSong const> songs, std::string const& from);
