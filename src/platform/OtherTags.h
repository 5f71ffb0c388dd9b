// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What a file says of its song beside ID3v2, or around it. Texts are UTF-8; empty: nothing said.
struct COtherTags {
    std::string m_sTitle;
    std::string m_sArtist;
    std::string m_sAlbum;
    std::string m_sKey;
    std::vector<std::string> m_vTempos; // as they stand there, the most exact one first

    /// The texts above are the kind's own, as in FLAC, and go before an ID3v2 tag's.
    bool m_bOwnFirst = false;

    /// ID3v2 tags, headers included: before the audio, or in a chunk of a WAV or AIFF file.
    std::vector<std::vector<std::uint8_t>> m_vId3;

    /// Title, artist and album of an ID3v1 trailer, cut to 30 bytes there.
    std::string m_sOldTitle;
    std::string m_sOldArtist;
    std::string m_sOldAlbum;
};

/// Reads what the file at `path` holds by its content: MP4 items, Vorbis comments, APEv2, ASF
/// attributes, RIFF and AIFF texts, and what Matroska, CAF and AU files say. The file is opened
/// once, regular files only, and at most 64 MB of it are read.
/// Returns: nothing said when it can't be read.
/// Thread: any.
COtherTags ReadOtherTags(std::string const& path);

/// The same of a file behind a descriptor that is open for reading, whose position changes.
COtherTags ReadOtherTags(int file);
