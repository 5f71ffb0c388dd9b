// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTags.h"

#include "base/FileUtil.h"
#include "song/SongTags.h"
#include "song/TempoText.h"

CString ReadRowTags(CBPMFile& row) {
    CSongTags const tags = ReadSongTags(row.GetPath());
    if (LeadingNumber(tags.m_sTempo) > 0.0) {
        row.SetTempo(tags.m_sTempo);
        row.SetDone(true);
    }
    // Deliberate: the title of the tag is taken when there is a tempo text, not when there is a
    // title; so a file without one is listed under its name.
    CString title = tags.m_sTitle;
    if (tags.m_sTempo.IsEmpty()) {
        CFileUtil::ExtractFileName(row.GetPath(), title);
    }
    row.SetTitle(title);
    row.SetArtist(tags.m_sArtist);
    return tags.m_sTempoFrame;
}
