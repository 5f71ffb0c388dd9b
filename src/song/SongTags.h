// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"
#include "platform/OtherTags.h"
#include "song/TagTempo.h"

#include <string>

/// The three texts by which the list knows a song, as the metadata import gives them: the ID3v2
/// tag, else the ID3v1 trailer, else none.
struct CSongTags {
    CString m_sTitle;
    CString m_sArtist;
    CString m_sTempo;
    CString m_sTempoFrame; // the ID3v2 tag's tempo alone, which a write is held against
};

/// Reads them. The tag is opened once, and never ends the process; what can't be read leaves its
/// text empty.
/// Thread: any.
CSongTags ReadSongTags(CString const& path);

/// What a file's tags say to people and other programs, whatever its kind: the second reading
/// beside the list's. Texts are UTF-8; empty: nothing said.
struct CShownTags {
    std::string m_sTitle;
    std::string m_sArtist;
    std::string m_sAlbum;
    std::string m_sKey;
    std::string m_sTempo; // the text that the tempo was taken from
    CTagTempo m_tempo;

    bool operator==(CShownTags const&) const = default;
};

/// Reads them: ID3v2 in every version, encoding and place, Vorbis comments, MP4 items, APEv2, ASF
/// attributes, and the texts of RIFF, AIFF, Matroska, CAF and AU files. An ID3v1 trailer fills in
/// for title, artist and album, never for a tempo. Of several tempos the first one that is believed
/// counts.
/// Thread: any.
CShownTags ReadShownTags(CString const& path);

/// The same of what has been read.
CShownTags ShownTagsOf(COtherTags const& other);
