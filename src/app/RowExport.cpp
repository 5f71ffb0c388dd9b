// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowExport.h"

#include "export/Columns.h"
#include "export/SongJson.h"
#include "export/SongTable.h"
#include "export/TakenSong.h"
#include "song/TempoText.h"

#include <vector>

namespace {

constexpr char const* kColumns[] = {"path", "title", "artist", "tempo", "source", "error"};

CTakenSong SongOf(CExportRow const& row) {
    CTakenSong song;
    song.m_sPath = row.m_sPath;
    song.m_sFolder = FolderOf(row.m_sPath);
    song.m_sTitle = row.m_sTitle;
    song.m_sArtist = row.m_sArtist;
    song.m_dTempo = LeadingNumber(CString(row.m_sTempo.c_str()));
    if (song.m_dTempo > 0.0) {
        song.m_tempoSource = row.m_bFromTag ? ETempoSource::Tag : ETempoSource::Analysis;
    }
    song.m_outcome = row.m_outcome;
    song.m_sMessage = row.m_sMessage;
    return song;
}

std::string TableOf(std::vector<CTakenSong> const& songs, char delimiter) {
    CTableShape shape;
    shape.m_cDelimiter = delimiter;
    for (char const* name : kColumns) {
        shape.m_vColumns.push_back(FindColumn(name));
    }
    return SongTableOf(songs, shape);
}

std::string JsonOf(std::vector<CTakenSong> const& songs) {
    CSongJsonWishes wishes;
    wishes.m_vOnly = {"title", "artist", "tempo", "tempoSource", "error"};
    std::string lines;
    for (CTakenSong const& song : songs) {
        lines += SongJson(song, wishes) + '\n';
    }
    return lines;
}

} // namespace

std::string ExportRows(std::span<CExportRow const> rows, ERowFormat format) {
    std::vector<CTakenSong> songs;
    songs.reserve(rows.size());
    for (CExportRow const& row : rows) {
        songs.push_back(SongOf(row));
    }
    switch (format) {
    case ERowFormat::Commas:
        return TableOf(songs, ',');
    case ERowFormat::Tabs:
        return TableOf(songs, '\t');
    case ERowFormat::Json:
        break;
    }
    return JsonOf(songs);
}
