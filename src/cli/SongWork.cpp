// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongWork.h"

#include "IDTag/FrameIds.h"
#include "base/FileUtil.h"
#include "cli/DecodeReason.h"
#include "cli/WriteReason.h"
#include "song/AudioKinds.h"
#include "song/SongCandidates.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

#include <cmath>

namespace {

constexpr std::uint8_t kRecentVersion = 4; // Standard: ID3v2.4.0, which is written as 2.3.

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
    m_row = {};
    m_bTagStands = false;
    m_row.m_sPath = m_input.m_sName;
    m_row.m_sTitle = m_input.m_sName;
    m_row.m_sError = m_input.m_sError;
    if (!m_input.m_sError.empty()) {
        CHeardSong unheard;
        unheard.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
        unheard.m_outcome.m_report.m_problem = EDecodeProblem::SystemError;
        TakeSong(unheard);
        return true;
    }
    m_identity = IdentityAt(m_input.m_sPath.ToPath());
    Recall();
    if (ReadTag()) {
        Remember();
        return true;
    }
    // What was heard before need not be heard again.
    return IsKnown() && Conclude(CHeardSong(*m_known.m_heard), "");
}

/// True when all that is asked for is remembered.
bool CSongWork::IsKnown() const {
    std::optional<CHeardSong> const& heard = m_known.m_heard;
    if (!heard || m_options.m_bWriteKey) { // which isn't remembered
        return false;
    }
    bool const hasEnvelopes = heard->m_facts && !heard->m_facts->m_energy.m_vLevels.empty();
    return (heard->m_candidates || !m_options.m_bCandidates) &&
           (heard->m_harmony || heard->m_facts || !m_options.m_bHarmony) &&
           (heard->m_facts || !m_options.m_bFacts) && (hasEnvelopes || !m_options.m_bEnvelopes);
}

/// Takes what is known of the file in its present state. Standard input lies in a file that is
/// nobody's.
void CSongWork::Recall() {
    m_known = {};
    m_bNews = false;
    m_bRested = m_identity && WouldChangesShow(*m_identity);
    bool const isKept = m_options.m_pStore != nullptr && m_input.m_sName != kStandardInputName;
    if (isKept && m_identity) {
        m_known = m_options.m_pStore->Find(m_input.m_sPath.ToPath(), *m_identity);
    }
}

void CSongWork::Remember() const {
    bool const isKept = m_options.m_pStore != nullptr && m_input.m_sName != kStandardInputName;
    if (isKept && m_bNews && m_bRested) {
        m_options.m_pStore->Keep(m_input.m_sPath.ToPath(), *m_identity, m_known);
    }
}

/// Keeps what was heard, if it was this file in this state, beside what was heard before.
void CSongWork::Learn(CHeardSong heard) {
    bool const isHeard = heard.m_outcome.m_problem == EAnalysisProblem::None;
    if (m_known.m_heard && !heard.m_candidates) {
        heard.m_candidates = m_known.m_heard->m_candidates;
    }
    if (m_known.m_heard && !heard.m_harmony) {
        heard.m_harmony = m_known.m_heard->m_harmony;
    }
    if (m_known.m_heard && m_known.m_heard->m_facts) {
        CSongFacts const& known = *m_known.m_heard->m_facts;
        CSongFacts& facts = heard.m_facts ? *heard.m_facts : heard.m_facts.emplace(known);
        if (facts.m_energy.m_vLevels.empty()) {
            facts.m_energy = known.m_energy;
            facts.m_bass = known.m_bass;
        }
    }
    bool const isNews = !m_known.m_heard || !(*m_known.m_heard == heard);
    if (isHeard && isNews && m_identity == heard.m_outcome.m_report.m_identity) {
        m_known.m_heard = std::move(heard);
        m_bNews = true;
    }
    Remember();
}

/// Fills the row from the tags. Returns: true when there is a tempo that needs no second look.
bool CSongWork::ReadTag() {
    m_pFile = std::make_unique<CBPMFile>(m_input.m_sPath);
    CAudioKind const* const kind = FindAudioKind(m_input.m_sPath);
    bool const isMp3 = kind != nullptr && kind->m_writing == ETagWriting::Id3;
    if (!m_known.m_tags) {
        m_known.m_tags = {.m_shown = ReadShownTags(m_input.m_sPath),
                          .m_sTempoFrame =
                              isMp3 ? ReadSongTags(m_input.m_sPath).m_sTempoFrame : CString()};
        m_bNews = true;
    }
    CShownTags const& tags = m_known.m_tags->m_shown;
    m_sTempoInTag = isMp3 ? m_known.m_tags->m_sTempoFrame : CString(tags.m_sTempo.c_str());
    m_row.m_bTitleIsName = tags.m_sTitle.empty();
    // Standard input lies in a file of another name.
    m_row.m_sTitle = !tags.m_sTitle.empty() ? tags.m_sTitle : FileNameOf(m_input);
    m_row.m_sArtist = tags.m_sArtist;
    m_row.m_sAlbum = tags.m_sAlbum;
    m_row.m_sTagKey = tags.m_sKey;
    m_row.m_tagTempo = tags.m_tempo.m_worth;
    m_row.m_sBefore = m_sTempoInTag.ToUtf8();
    m_row.m_setBy = FindSetBy();
    m_row.m_plan = m_options.m_bDryRun ? EPlan::Skip : EPlan::None;
    bool const isDoubted = m_options.m_bRecheck && tags.m_tempo.m_worth == ETagTempo::Unlikely;
    if (tags.m_tempo.m_worth == ETagTempo::None || m_options.m_bForce || isDoubted) {
        return false;
    }
    m_row.m_dTempo = tags.m_tempo.m_dBpm;
    m_row.m_source = ETempoSource::Tag;
    m_row.m_plan = m_options.m_bDryRun ? EPlan::Keep : EPlan::None;
    m_bTagStands = m_options.m_bFacts;
    return !m_bTagStands;
}

/// Who set the tempo in the tag of an MP3 file, by the journal.
ESetBy CSongWork::FindSetBy() const {
    if (!(LeadingNumber(m_sTempoInTag) > 0.0)) {
        return ESetBy::Nobody;
    }
    std::optional<ETextOrigin> origin;
    if (m_options.m_pJournal != nullptr) {
        origin = m_options.m_pJournal->OriginOf(m_input.m_sPath.ToPath(), kTempoFrameId,
                                                m_sTempoInTag.ToUtf8());
    }
    return origin == ETextOrigin::Heard  ? ESetBy::Tactus
           : origin == ETextOrigin::Hand ? ESetBy::Hand
                                         : ESetBy::Other;
}

/// Why the tempo in the tag stays although another one was heard; empty when it may go.
std::string CSongWork::ReasonToKeep() const {
    double const old = LeadingNumber(m_sTempoInTag);
    if (m_row.m_setBy == ESetBy::Nobody || !m_options.m_bForce) {
        return {};
    }
    bool const hasLimit = m_options.m_dLeastOff > 0.0;
    if (hasLimit && std::abs(*m_row.m_dTempo - old) <= m_options.m_dLeastOff * old) {
        return "the tag's tempo is within the limit";
    }
    if (m_row.m_setBy == ESetBy::Tactus || m_options.m_bOverwriteHand) {
        return {};
    }
    return m_row.m_setBy == ESetBy::Hand ? "the tag's tempo was set by hand: --overwrite-hand"
                                         : "the tag's tempo is another program's: --overwrite-hand";
}

/// True when tempos are stored in files of this kind.
bool CSongWork::IsToBeWritten() const {
    CAudioKind const* const kind = FindAudioKind(m_input.m_sPath);
    return kind != nullptr && (kind->m_writing == ETagWriting::Id3 ||
                               (kind->m_writing == ETagWriting::Library && m_options.m_writeTypes &&
                                m_options.m_writeTypes->Has(*kind)));
}

/// Tells what would become of the file, as far as that can be told without a write.
void CSongWork::Plan(CAnalysisOutcome const& outcome, std::string const& tempo) {
    EWriteProblem const problem =
        IsToBeWritten() ? ProblemOfStoring(outcome, FindAudioKind(m_input.m_sPath)->m_container)
                        : EWriteProblem::OtherExtension;
    bool const isThere = m_sTempoInTag == tempo.c_str();
    m_row.m_plan = m_row.m_bKept                    ? EPlan::Differ
                   : isThere                        ? EPlan::Keep
                   : problem == EWriteProblem::None ? EPlan::Write
                                                    : EPlan::Skip;
    if (m_row.m_plan == EPlan::Skip) {
        m_row.m_sNotStored = NotWrittenReason(problem);
    }
}

/// What is told and stored: the tempo that was heard, unless another reading of it is wanted.
double CSongWork::ReportedTempo(CHeardSong const& heard) const {
    double bpm = LeadingNumber(CString(heard.m_sTempo.c_str()));
    if (m_options.m_bLikely && heard.m_candidates && !heard.m_candidates->m_vCandidates.empty()) {
        bpm = static_cast<double>(heard.m_candidates->m_vCandidates.front().m_fBpm);
    }
    return m_options.m_dSlowest > 0.0 ? FoldedTempo(bpm, m_options.m_dSlowest, m_options.m_dFastest)
                                      : bpm;
}

/// Where the tempo that is told comes from. The likeliest reading of a short clip was heard, unless
/// it is the one that follows from the length.
ETempoSource CSongWork::SourceOf(CHeardSong const& heard) const {
    bool isTold = true;
    if (m_options.m_bLikely && heard.m_candidates && !heard.m_candidates->m_vCandidates.empty()) {
        CTempoCandidate const& first = heard.m_candidates->m_vCandidates.front();
        isTold = first.m_nTimes == first.m_nOver && first.m_nTimes != 0;
    }
    return heard.m_bByLength && isTold ? ETempoSource::Length : ETempoSource::Analysis;
}

bool CSongWork::Conclude(CHeardSong const& heard, std::string const& key) {
    CAnalysisOutcome const& outcome = heard.m_outcome;
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None;
    if ((!isHeard || m_options.m_bWrite) && HasChanged() && m_retries.AfterChange()) {
        return false;
    }
    Learn(heard);
    m_row.m_sError = isHeard ? DamageReason(outcome.m_report) : AnalysisReason(outcome);
    m_row.m_sDetail = outcome.m_report.m_sDetail;
    if (isHeard && !m_bTagStands) {
        m_row.m_dTempo = ReportedTempo(heard);
        m_row.m_source = SourceOf(heard);
        m_row.m_bNoBeat = !(m_row.m_dTempo > 0.0);
    }
    if (m_row.m_bNoBeat) {
        m_row.m_dTempo.reset();
    }
    if (m_options.m_bCandidates && heard.m_candidates) {
        m_row.m_candidates = *heard.m_candidates;
    }
    if (m_options.m_bHarmony) {
        bool const isAmongFacts = !heard.m_harmony && heard.m_facts;
        m_row.m_harmony = isAmongFacts ? heard.m_facts->m_harmony : heard.m_harmony;
    }
    TakeSong(heard);
    return !isHeard || !m_options.m_bWrite || m_bTagStands || Store(outcome, key);
}

/// Puts the record into the row, which has its tempo and what a person is told.
void CSongWork::TakeSong(CHeardSong const& heard) {
    if (!m_options.m_bFacts) {
        return;
    }
    CShownTags const tags = m_known.m_tags ? m_known.m_tags->m_shown : CShownTags();
    auto song = std::make_shared<CTakenSong>(TakenSongOf(m_row.m_sPath, tags, heard));
    song->m_sMessage = m_row.m_sError;
    if (m_row.m_bNoBeat) {
        song->m_sMessage = AnalysisReason({.m_problem = EAnalysisProblem::NoBeat});
    }
    if (m_row.m_dTempo && *m_row.m_dTempo > 0.0) {
        song->m_tempoSource = m_row.m_source;
        bool const isReported = m_row.m_source == ETempoSource::Tag || m_options.m_bLikely ||
                                m_options.m_dSlowest > 0.0;
        song->m_dTempo = isReported ? *m_row.m_dTempo : song->m_dTempo;
    }
    m_row.m_pSong = std::move(song);
}

void CSongWork::Fail(EAnalysisProblem problem) {
    m_row.m_source = ETempoSource::None;
    m_row.m_dTempo.reset();
    CHeardSong unheard;
    unheard.m_outcome.m_problem = problem;
    m_row.m_sError = AnalysisReason(unheard.m_outcome);
    TakeSong(unheard);
}

/// How the tempo is to be stored.
CStoreTempoOptions CSongWork::WishesFor(std::string const& key) const {
    CStoreTempoOptions options;
    if (!m_options.m_bForce || !m_options.m_bOverwriteHand) {
        options.m_tempoBefore = m_sTempoInTag;
    }
    options.m_bKeepTime = m_options.m_bKeepTime;
    options.m_bKeepVersion = m_options.m_bKeepVersion;
    options.m_types = m_options.m_writeTypes;
    options.m_sKey = m_options.m_bWriteKey ? key : std::string();
    return options;
}

/// Stores the tempo in the tag, as the window does unless more is asked for, but never one of 0.
/// Returns: false when somebody else was at the file and there is another attempt to be made.
bool CSongWork::Store(CAnalysisOutcome const& outcome, std::string const& key) {
    m_row.m_writing = EWriting::NotStored;
    if (m_row.m_bNoBeat) {
        m_row.m_sNotStored = "no beat was found";
        return true;
    }
    m_row.m_bTooShort =
        m_row.m_source == ETempoSource::Length && !m_options.m_bShort && IsToBeWritten();
    if (m_row.m_bTooShort) {
        m_row.m_sNotStored = "its tempo follows from its length: --short stores it";
        return true;
    }
    std::string const text = RoundedTempo(*m_row.m_dTempo, m_options.m_nDecimals);
    m_row.m_sNotStored = ReasonToKeep();
    m_row.m_bKept = !m_row.m_sNotStored.empty();
    if (m_options.m_bDryRun) {
        Plan(outcome, text);
    }
    if (m_row.m_bKept || m_options.m_bDryRun) {
        return true;
    }
    std::unique_ptr<ITagWitness> witness;
    std::unique_ptr<ITagWitness> keyWitness;
    if (m_options.m_pJournal != nullptr) {
        witness = m_options.m_pJournal->Witness(EJournalWriter::Analyze, ETextOrigin::Heard);
        keyWitness = m_options.m_pJournal->Witness(EJournalWriter::Analyze, ETextOrigin::Heard);
    }
    CStoreTempoOptions options = WishesFor(key);
    options.m_pWitness = witness.get();
    options.m_pKeyWitness = keyWitness.get();
    CTagStoreReport report;
    EWriteProblem const problem =
        StoreTempo(m_input.m_sPath, outcome, CString(text.c_str()), options, &report);
    if (m_retries.After(problem)) {
        return false;
    }
    m_row.m_writing = problem == EWriteProblem::None ? EWriting::Stored : EWriting::NotStored;
    m_row.m_sNotStored = NotWrittenReason(problem);
    m_row.m_sNote = ConversionNote(report.m_vConverted);
    m_row.m_bNewVersion =
        report.m_bWritten && report.m_nVersionBefore == kRecentVersion && !options.m_bKeepVersion;
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
