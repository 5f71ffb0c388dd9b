// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongTags.h"

#include "IDTag/FrameIds.h"
#include "IDTag/ID3Reader.h"
#include "IDTag/MacCFile.h"
#include "IDTag/TagReading.h"
#include "IDTag/TagStore.h"
#include "platform/OtherTags.h"

#include <memory>
#include <string_view>
#include <vector>

namespace {

constexpr char kTitleFrameId[] = "TIT2";  // Standard: ID3v2.3.0, section 4.2.1.
constexpr char kArtistFrameId[] = "TPE1"; // Standard: likewise.
constexpr char kAlbumFrameId[] = "TALB";  // Standard: likewise.

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

std::string Joined(std::vector<std::string> const& texts) {
    std::string joined;
    for (std::string const& text : texts) {
        joined.append(joined.empty() ? "" : ", ").append(text);
    }
    return joined;
}

/// Lets `text` stand unless it is empty.
void Fill(std::string& text, std::string const& other) {
    if (text.empty()) {
        text = other;
    }
}

/// Adds what an ID3v2 tag says, and its tempos to `tempos`.
void FillFromId3(CTagReading const& tag, CShownTags& tags, std::vector<std::string>& tempos) {
    Fill(tags.m_sTitle, Joined(tag.Texts(kTitleFrameId)));
    Fill(tags.m_sArtist, Joined(tag.Texts(kArtistFrameId)));
    Fill(tags.m_sAlbum, Joined(tag.Texts(kAlbumFrameId)));
    Fill(tags.m_sKey, Joined(tag.Texts(kKeyFrameId)));
    for (std::string const& text : tag.Texts(kTempoFrameId)) {
        tempos.push_back(text);
    }
    for (char const* name : {"BPM", "TEMPO"}) {
        for (std::string const& text : tag.UserTexts(name)) {
            tempos.push_back(text);
        }
    }
}

void FillFromOther(COtherTags const& other, CShownTags& tags, std::vector<std::string>& tempos) {
    Fill(tags.m_sTitle, other.m_sTitle);
    Fill(tags.m_sArtist, other.m_sArtist);
    Fill(tags.m_sAlbum, other.m_sAlbum);
    Fill(tags.m_sKey, other.m_sKey);
    tempos.insert(tempos.end(), other.m_vTempos.begin(), other.m_vTempos.end());
}

/// The lower, the more a tempo in a tag is to be trusted.
int RankOf(CTagTempo const& tempo) {
    switch (tempo.m_worth) {
    case ETagTempo::Plain:
        return 0;
    case ETagTempo::TimesTen:
    case ETagTempo::TimesHundred:
        return 1;
    case ETagTempo::Unlikely:
        return 2;
    case ETagTempo::None:
        break;
    }
    return 3;
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

CShownTags ReadShownTags(CString const& path) {
    return ShownTagsOf(ReadOtherTags(path.ToPath()));
}

CShownTags ShownTagsOf(COtherTags const& other) {
    CShownTags tags;
    std::vector<std::string> tempos;
    if (other.m_bOwnFirst) {
        FillFromOther(other, tags, tempos);
    }
    for (std::vector<std::uint8_t> const& tag : other.m_vId3) {
        FillFromId3(CTagReading(tag), tags, tempos);
    }
    if (!other.m_bOwnFirst) {
        FillFromOther(other, tags, tempos);
    }
    Fill(tags.m_sTitle, other.m_sOldTitle);
    Fill(tags.m_sArtist, other.m_sOldArtist);
    Fill(tags.m_sAlbum, other.m_sOldAlbum);
    for (std::string const& text : tempos) {
        CTagTempo const tempo = JudgeTagTempo(text);
        if (RankOf(tempo) < RankOf(tags.m_tempo)) {
            tags.m_tempo = tempo;
            tags.m_sTempo = text;
        }
    }
    return tags;
}
