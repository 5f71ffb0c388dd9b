// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Playlist.h"

#include "base/Utf16.h"
#include "export/FileUri.h"
#include "export/TakenSong.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// Line ends would begin an entry of their own.
std::string OneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

std::string NameOf(CTakenSong const& song) {
    if (song.m_sTitle.empty()) {
        return OneLine(fs::path(song.m_sPath).filename().native());
    }
    return OneLine(song.m_sArtist.empty() ? song.m_sTitle : song.m_sArtist + " - " + song.m_sTitle);
}

std::string PlaceOf(CTakenSong const& song, std::string const& from) {
    std::error_code error;
    fs::path const absolute = fs::absolute(song.m_sPath, error).lexically_normal();
    std::string path =
        from.empty()
            ? absolute.native()
            : absolute.lexically_relative(fs::absolute(from, error).lexically_normal()).native();
    if (error || path.find_first_of("\r\n") != std::string::npos || !IsUtf8(path)) {
        return FileUri(song.m_sPath);
    }
    return path.starts_with('#') ? "./" + path : path;
}

} // namespace

std::string PlaylistOf(std::span<CTakenSong const> songs, std::string const& from) {
    std::string list = std::string("#EXTM3U\n") + kPlaylistMark + "\n";
    for (CTakenSong const& song : songs) {
        if (song.m_dSeconds > 0.0) {
            auto const seconds = static_cast<std::int64_t>(std::llround(song.m_dSeconds));
            list += "#EXTINF:" + std::to_string(seconds) + "," + NameOf(song) + "\n" +
                    PlaceOf(song, from) + "\n";
        }
    }
    return list;
}
