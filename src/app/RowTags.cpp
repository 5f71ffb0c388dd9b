// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTags.h"

#include "base/FileUtil.h"
#include "song/AudioKinds.h"
#include "song/SongTags.h"
#include "song/TagTempo.h"
#include "song/TempoText.h"

namespace {

ETagWriting WritingOf(CString const& path) {
    CAudioKind const* const kind = FindAudioKind(path);
    return kind != nullptr ? kind->m_writing : ETagWriting::None;
}

bool IsMp3(CString const& path) {
    return WritingOf(path) == ETagWriting::Id3;
}

CString TextOf(std::string const& utf8) {
    return CString::FromUtf8(utf8);
}

/// Fills the row with what people mean by its texts.
CString ReadShownRowTags(CBPMFile& row) {
    CShownTags const tags = ReadShownTags(row.GetPath());
    bool const hasTempo = tags.m_tempo.m_worth != ETagTempo::None;
    if (hasTempo) {
        row.SetTempo(CString(TempoText(tags.m_tempo.m_dBpm).c_str()));
        row.SetDone(true);
    }
    CString name;
    CFileUtil::ExtractFileName(row.GetPath(), name);
    row.SetTitle(tags.m_sTitle.empty() ? name : TextOf(tags.m_sTitle));
    row.SetArtist(TextOf(tags.m_sArtist));
    return TextOf(tags.m_sTempo);
}

} // namespace

CString ReadRowTags(CBPMFile& row, CWishes const& wishes) {
    if ((wishes.m_bOtherKinds || wishes.m_bWriteOtherKinds) && !IsMp3(row.GetPath())) {
        return ReadShownRowTags(row);
    }
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
    bool const isLibrarys = WritingOf(row.GetPath()) == ETagWriting::Library;
    return isLibrarys ? TextOf(ReadShownTags(row.GetPath()).m_sTempo) : tags.m_sTempoFrame;
}

CString TempoOfTagText(CString const& path, CString const& text) {
    if (IsMp3(path)) {
        return LeadingNumber(text) > 0.0 ? text : CString();
    }
    CTagTempo const tempo = JudgeTagTempo(text.ToUtf8());
    return tempo.m_worth == ETagTempo::None ? CString() : CString(TempoText(tempo.m_dBpm).c_str());
}
