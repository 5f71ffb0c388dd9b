// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongTags.h"

#include "IDTag/ID3Reader.h"
#include "IDTag/MacCFile.h"
#include "IDTag/TagStore.h"

#include <memory>

namespace {

constexpr char kTitleFrameId[] = "TIT2";  // Standard: ID3v2.3.0, section 4.2.1.
constexpr char kArtistFrameId[] = "TPE1"; // Standard: likewise.
constexpr char kTempoFrameId[] = "TBPM";  // Standard: likewise.

/// Takes the text from the tag, and from the old trailer what isn't in the tag. The trailer changes
/// the text also when it has nothing to say, as the metadata import has it.
void ReadText(CID3Tag const* tag, CFile* file, char const* frameId, CString& text) {
    if (tag != nullptr && TagTextOf(*tag, frameId, text) == kStatusOk) {
        return;
    }
    if (file != nullptr) {
        (void)CID3Reader::ImportID3v1MetaData(file, frameId, text);
    }
}

} // namespace

CSongTags ReadSongTags(CString const& path) {
    CSongTags tags;
    CID3Tag tag;
    CTagRules rules;
    rules.m_bEveryId = true;
    tag.SetRules(rules);
    bool const hasTag = tag.OpenFile(path) == kStatusOk;
    if (hasTag) {
        (void)TagTextOf(tag, kTempoFrameId, tags.m_sTempoFrame);
    }
    CFile opened;
    CFile* const file = opened.Open(path, CFile::modeRead, nullptr) ? &opened : nullptr;
    CID3Tag const* const readable = hasTag ? &tag : nullptr;
    try {
        ReadText(readable, file, kTitleFrameId, tags.m_sTitle);
        ReadText(readable, file, kArtistFrameId, tags.m_sArtist);
        ReadText(readable, file, kTempoFrameId, tags.m_sTempo);
    } catch (CFileException* thrown) {
        std::unique_ptr<CFileException> const owned(thrown);
    }
    return tags;
}
