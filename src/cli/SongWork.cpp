// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongWork.h"

#include "app/RowTags.h"
#include "base/FileUtil.h"
#include "cli/DecodeReason.h"
#include "cli/WriteReason.h"
#include "song/AudioKinds.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

namespace {

constexpr int kMostAttempts = 3; // Fixed: a file that never rests is given up.

std::string FileNameOf(CInputFile const& input) {
    if (input.m_sName == kStandardInputName) {
        return input.m_sName;
    }
    CString name;
    CFileUtil::ExtractFileName(input.m_sPath, name);
    return name.ToUtf8();
}

} // namespace

CSongWork::CSongWork(CInputFile input, CSongOptions const& options)
    : m_input(std::move(input)), m_options(options) {
}

bool CSongWork::Begin() {
    ++m_nAttempts;
    m_row = {};
    m_row.m_sPath = m_input.m_sName;
    m_row.m_sTitle = m_input.m_sName;
    m_row.m_sError = m_input.m_sError;
    if (!m_input.m_sError.empty()) {
        return true;
    }
    m_identity = IdentityAt(m_input.m_sPath.ToPath());
    return ReadTag();
}

/// Fills the row from the tags. Returns: true when there is a tempo that needs no second look.
bool CSongWork::ReadTag() {
    m_pFile = std::make_unique<CBPMFile>(m_input.m_sPath);
    m_sTempoInTag = IsWritable(m_input) ? ReadSongTags(m_input.m_sPath).m_sTempoFrame : CString();
    CShownTags const tags = ReadShownTags(m_input.m_sPath);
    m_row.m_bTitleIsName = tags.m_sTitle.empty();
    // Standard input lies in a file of another name.
    m_row.m_sTitle = !tags.m_sTitle.empty() ? tags.m_sTitle : FileNameOf(m_input);
    m_row.m_sArtist = tags.m_sArtist;
    m_row.m_sAlbum = tags.m_sAlbum;
    m_row.m_sTagKey = tags.m_sKey;
    m_row.m_tagTempo = tags.m_tempo.m_worth;
    bool const isDoubted = m_options.m_bRecheck && tags.m_tempo.m_worth == ETagTempo::Unlikely;
    if (tags.m_tempo.m_worth == ETagTempo::None || m_options.m_bForce || isDoubted) {
        return false;
    }
    m_row.m_dTempo = tags.m_tempo.m_dBpm;
    m_row.m_source = ETempoSource::Tag;
    return true;
}

bool CSongWork::Conclude(CAnalysisOutcome const& outcome, std::string const& tempo) {
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None;
    if ((!isHeard || m_options.m_bWrite) && m_nAttempts < kMostAttempts && HasChanged()) {
        return false;
    }
    m_row.m_sError = isHeard ? DamageReason(outcome.m_report) : AnalysisReason(outcome);
    m_row.m_sDetail = outcome.m_report.m_sDetail;
    if (isHeard) {
        m_row.m_dTempo = LeadingNumber(CString(tempo.c_str()));
        m_row.m_source = ETempoSource::Analysis;
    }
    return !isHeard || !m_options.m_bWrite || Store(outcome, tempo);
}

/// Stores the tempo in the tag as the window does, but never one of 0.
/// Returns: false when somebody else was at the file and there is another attempt to be made.
bool CSongWork::Store(CAnalysisOutcome const& outcome, std::string const& tempo) {
    m_row.m_writing = EWriting::NotStored;
    if (!(m_row.m_dTempo > 0.0)) {
        m_row.m_sNotStored = "no beat was found";
        return true;
    }
    CStoreTempoOptions options;
    if (!m_options.m_bForce) {
        options.m_tempoBefore = m_sTempoInTag;
    }
    std::unique_ptr<ITagWitness> witness;
    if (m_options.m_pJournal != nullptr) {
        witness = m_options.m_pJournal->Witness(EJournalWriter::Analyze, ETextOrigin::Heard);
        options.m_pWitness = witness.get();
    }
    EWriteProblem const problem =
        StoreTempo(m_input.m_sPath, outcome, CString(tempo.c_str()), options);
    bool const isShared = problem == EWriteProblem::Changed || problem == EWriteProblem::InUse ||
                          problem == EWriteProblem::TempoChanged;
    if (isShared && m_nAttempts < kMostAttempts) {
        return false;
    }
    m_row.m_writing = problem == EWriteProblem::None ? EWriting::Stored : EWriting::NotStored;
    m_row.m_sNotStored = WriteReason(problem);
    // That other kinds are never written is no news.
    m_row.m_bRefused = problem != EWriteProblem::None && problem != EWriteProblem::OtherExtension;
    return true;
}

bool CSongWork::IsWritable(CInputFile const& input) {
    CAudioKind const* const kind = FindAudioKind(input.m_sPath);
    return kind != nullptr && kind->m_writing != ETagWriting::None;
}

bool CSongWork::HasChanged() const {
    return IdentityAt(m_input.m_sPath.ToPath()) != m_identity;
}
