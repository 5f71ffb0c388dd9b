// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTags.h"

#include "IDTag/ID3Reader.h"
#include "IDTag/ID3Tag.h"
#include "IDTag/MacCFile.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr char kTitleFrameId[] = "TIT2";  // Standard: ID3v2.3.0, section 4.2.1.
constexpr char kArtistFrameId[] = "TPE1"; // Standard: likewise.
constexpr char kTempoFrameId[] = "TBPM";  // Standard: likewise.

struct CTagTexts {
    CString m_sTitle;
    CString m_sArtist;
    CString m_sTempo;
};

// A frame that can't be read is as good as none.
CTagTexts ReadTexts(CString const& path) {
    CTagTexts texts;
    CFile file;
    if (!file.Open(path, CFile::modeRead, nullptr)) {
        return texts;
    }
    try {
        CID3Reader::ImportMetaData(&file, kTitleFrameId, texts.m_sTitle);
        CID3Reader::ImportMetaData(&file, kArtistFrameId, texts.m_sArtist);
        CID3Reader::ImportMetaData(&file, kTempoFrameId, texts.m_sTempo);
    } catch (CFileException* thrown) {
        std::unique_ptr<CFileException> const owned(thrown);
    }
    return texts;
}

} // namespace

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

bool ReadRowTags(CBPMFile& row) {
    CString const path = row.GetPath();
    CTagTexts texts;
    bool const isOpen = CID3Tag::AreFrameIdsKnown(path) == kStatusOk;
    if (isOpen) {
        texts = ReadTexts(path);
    }
    if (LeadingNumber(texts.m_sTempo) > 0.0) {
        row.SetTempo(texts.m_sTempo);
        row.SetDone(true);
    }
    // Deliberate: the title of the tag is taken when there is a tempo text, not when there is a
    // title; so a file without one is listed under its name.
    CString title = texts.m_sTitle;
    if (texts.m_sTempo.IsEmpty()) {
        CFileUtil::ExtractFileName(path, title);
    }
    row.SetTitle(title);
    row.SetArtist(texts.m_sArtist);
    return isOpen;
}
