// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongNames.h"

#include "base/FileIdentity.h"
#include "cli/SongWork.h"

#include <cstdlib>
#include <sys/stat.h>

namespace {

struct CFree {
    void operator()(char* text) const { std::free(text); }
};

/// The row of the same file under another name.
CReportRow RowUnder(std::string const& name, CReportRow row) {
    if (row.m_bTitleIsName) {
        row.m_sTitle = name.substr(name.rfind('/') + 1);
    }
    row.m_sPath = name;
    row.m_bFurtherName = true;
    if (row.m_pSong != nullptr) {
        auto song = std::make_shared<CTakenSong>(*row.m_pSong);
        song->m_sPath = name;
        song->m_sFolder = FolderOf(name);
        row.m_pSong = std::move(song);
    }
    return row;
}

bool AreSameFile(std::string const& a, std::string const& b) {
    std::optional<CFileIdentity> const first = IdentityAt(a);
    std::optional<CFileIdentity> const second = IdentityAt(b);
    return first && second && first->IsSameFile(*second);
}

} // namespace

/// What tells that two names are of one file: the path behind all links, which stays when a new
/// version takes its place, and the inode where there are several such paths. Empty when there is
/// no file.
std::vector<std::string> CSongNames::KeysOf(CInputFile const& input) const {
    std::string const path = input.m_sPath.ToPath();
    struct stat info {};
    std::unique_ptr<char, CFree> const real(::realpath(path.c_str(), nullptr));
    if (!input.m_sError.empty() || real == nullptr || ::stat(path.c_str(), &info) != 0) {
        return {};
    }
    // No path begins with these.
    std::string const kind = m_bSortsByKind && CSongWork::IsWritable(input) ? "w" : "r";
    std::vector<std::string> keys = {kind + real.get()};
    if (info.st_nlink > 1) {
        keys.push_back(kind + std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino));
    }
    return keys;
}

std::shared_ptr<CSong> CSongNames::Enter(CPlacedFile const& file,
                                         std::optional<CPlacedRow>& answered) {
    std::string const path = file.m_input.m_sPath.ToPath();
    std::vector<std::string> const keys = KeysOf(file.m_input);
    for (std::string const& key : keys) {
        auto const place = m_songs.find(key);
        if (place == m_songs.end()) {
            continue;
        }
        CSong& song = *place->second;
        if (song.m_bForgotten) {
            continue;
        }
        if (!song.m_row) {
            song.m_vWaiting.push_back(file);
            return nullptr;
        }
        if (AreSameFile(song.m_sPath, path)) {
            answered.emplace(file.m_nIndex, RowUnder(file.m_input.m_sName, *song.m_row));
            return nullptr;
        }
    }
    auto song = std::make_shared<CSong>();
    song->m_sPath = path;
    for (std::string const& key : keys) {
        m_songs[key] = song;
    }
    return song;
}

std::vector<CPlacedRow> CSongNames::Answer(CSong& song, CReportRow const& row,
                                           std::vector<CPlacedFile>& released) {
    std::vector<CPlacedRow> rows;
    for (CPlacedFile& file : std::exchange(song.m_vWaiting, {})) {
        if (AreSameFile(song.m_sPath, file.m_input.m_sPath.ToPath())) {
            rows.emplace_back(file.m_nIndex, RowUnder(file.m_input.m_sName, row));
        } else {
            released.push_back(std::move(file));
        }
    }
    song.m_bForgotten = row.m_pSong != nullptr;
    if (!song.m_bForgotten) {
        song.m_row = row;
    }
    return rows;
}
