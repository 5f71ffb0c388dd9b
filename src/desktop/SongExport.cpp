// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongExport.h"

#include "export/Jams.h"
#include "export/Labels.h"
#include "export/Midi.h"
#include "export/Playlist.h"
#include "export/SongJson.h"
#include "export/xml/Rekordbox.h"
#include "export/xml/SongDrawing.h"

namespace {

std::string RecordsOf(std::span<CTakenSong const> songs) {
    std::string lines;
    for (CTakenSong const& song : songs) {
        lines += SongJson(song) + '\n';
    }
    return lines;
}

std::string OneSongText(CTakenSong const& song, ESongFormat format, std::string const& version) {
    switch (format) {
    case ESongFormat::Labels:
        return LabelsOf(song);
    case ESongFormat::Midi:
        return MidiOf(song);
    case ESongFormat::Jams:
        return JamsOf(song, version) + '\n';
    default:
        return SongDrawingOf(song);
    }
}

} // namespace

bool IsOneASong(ESongFormat format) {
    return format >= ESongFormat::Labels;
}

bool NeedsEnvelopes(ESongFormat format) {
    return format == ESongFormat::Drawing;
}

char const* EndingOf(ESongFormat format) {
    switch (format) {
    case ESongFormat::Rekordbox:
        return "xml";
    case ESongFormat::Playlist:
        return "m3u8";
    case ESongFormat::Record:
        return "jsonl";
    case ESongFormat::Labels:
        return "txt";
    case ESongFormat::Midi:
        return "mid";
    case ESongFormat::Jams:
        return "jams";
    case ESongFormat::Drawing:
        break;
    }
    return "svg";
}

std::string SongsText(std::span<CTakenSong const> songs, ESongFormat format,
                      std::string const& version) {
    switch (format) {
    case ESongFormat::Rekordbox:
        return RekordboxOf(songs, {.m_sVersion = version});
    case ESongFormat::Playlist:
        return PlaylistOf(songs, {});
    case ESongFormat::Record:
        return RecordsOf(songs);
    default:
        return songs.empty() ? std::string() : OneSongText(songs.front(), format, version);
    }
}
