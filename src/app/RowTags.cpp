// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTags.h"

#include "base/FileUtil.h"
#include "song/SongTags.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

double LeadingNumber(CString const& text) {
    std::string const bytes = text.ToUtf8();
    char const* first = bytes.data();
    char const* last = first + bytes.size();
    first += std::min(bytes.find_first_not_of(" \t\n\r\f\v"), bytes.size());
    bool const isNegative = first != last && *first == '-';
    if (isNegative || (first != last && *first == '+')) {
        ++first;
    }
    // Neither a second sign nor words such as "inf" and "nan" are a number here.
    double value = 0.0;
    if (std::string_view(first, last).find_first_of("0123456789.") == 0) {
        std::from_chars(first, last, value);
    }
    return isNegative ? -value : value;
}

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
