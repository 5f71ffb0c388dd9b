// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// A large collection that was heard before, without the days of listening to it: in FOLDER arise
// COUNT small files, ten to an album, and what the cache knows of SONG is kept as known of each,
// under a title and an artist of its own. See exports.sh.
//
//     keep_songs SONG FOLDER COUNT

#include "records/Places.h"
#include "records/RecordStore.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int kSongsAnAlbum = 10;
constexpr int kSongsAnArtist = 25;

/// Makes the file of song `number` and returns its path.
std::string MakeFile(fs::path const& folder, int number, std::string const& extension) {
    fs::path const album = folder / ("Album " + std::to_string(number / kSongsAnAlbum));
    fs::create_directories(album);
    std::string path = (album / ("Song " + std::to_string(number) + extension)).native();
    std::ofstream(path) << number;
    return path;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        (void)std::fputs("usage: keep_songs SONG FOLDER COUNT\n", stderr);
        return 2;
    }
    std::string const song = argv[1];
    int const count = std::atoi(argv[3]);
    CRecordStore store(CacheFolder());
    std::optional<CFileIdentity> const heard = IdentityAt(song);
    CSongRecord record = heard ? store.Find(song, *heard) : CSongRecord();
    if (!record.m_heard || !record.m_tags) {
        (void)std::fputs("keep_songs: the cache doesn't know the song\n", stderr);
        return 1;
    }
    for (int i = 0; i < count; ++i) {
        record.m_tags->m_shown.m_sTitle = "Song " + std::to_string(i);
        record.m_tags->m_shown.m_sArtist = "Artist " + std::to_string(i / kSongsAnArtist);
        std::string const path = MakeFile(argv[2], i, fs::path(song).extension().native());
        if (std::optional<CFileIdentity> const identity = IdentityAt(path)) {
            store.Keep(path, *identity, record);
        }
    }
    return store.Problem() == ERecordProblem::None ? 0 : 1;
}
