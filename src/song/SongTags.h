// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

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
