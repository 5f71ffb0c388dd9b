// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/StoreTempo.h"

#include "IDTag/FrameIds.h"
#include "song/AudioKinds.h"
#include "song/LibraryStore.h"
#include "song/SongTags.h"

#include <algorithm>

namespace {

constexpr std::int64_t kPacketsPerBad = 100; // Fixed: one bad packet in as many is too much.

/// Writes the key, unless the tempo isn't what `options` expect of it.
EWriteProblem StoreKey(CString const& path, CTagStoreOptions options, std::string const& key,
                       CTagStoreReport& report) {
    CString tempo;
    (void)ReadTagText(path, kTempoFrameId, tempo);
    if (options.m_expectedText && !(*options.m_expectedText == tempo)) {
        return EWriteProblem::TempoChanged;
    }
    options.m_expectedText = std::nullopt;
    return StoreTagText(path, kKeyFrameId, CString(key.c_str()), options, &report);
}

EWriteProblem StoreInMp3(CString const& path, CFileIdentity const& heard, CString const& tempo,
                         CStoreTempoOptions const& wishes, CTagStoreReport* report) {
    CTagStoreReport ignored;
    CTagStoreReport& told = report != nullptr ? *report : ignored;
    CTagStoreOptions options;
    options.m_expected = heard;
    options.m_expectedText = wishes.m_tempoBefore;
    options.m_bKeepTime = wishes.m_bKeepTime;
    options.m_bKeepVersion = wishes.m_bKeepVersion;
    if (!wishes.m_sKey.empty()) {
        // The key goes first: with the tempo the song is done, and can be gone back from.
        CTagStoreReport keyTold;
        options.m_pWitness = wishes.m_pKeyWitness;
        EWriteProblem const problem = StoreKey(path, options, wishes.m_sKey, keyTold);
        if (problem != EWriteProblem::None) {
            return problem;
        }
        options.m_expected = keyTold.m_bWritten ? keyTold.m_after : heard;
        told.m_nVersionBefore = keyTold.m_nVersionBefore;
    }
    std::uint8_t const version = told.m_nVersionBefore;
    options.m_pWitness = wishes.m_pWitness;
    EWriteProblem const problem = StoreTagText(path, kTempoFrameId, tempo, options, &told);
    told.m_nVersionBefore = std::max(version, told.m_nVersionBefore);
    return problem;
}

EWriteProblem StoreInOther(CString const& path, CAudioKind const& kind, CFileIdentity const& seen,
                           CTagWish const& wish, CStoreTempoOptions const& wishes) {
    CLibraryStoreOptions options = {.m_expected = seen, .m_pWitness = wishes.m_pWitness};
    if (wishes.m_tempoBefore) {
        options.m_tempoBefore = wishes.m_tempoBefore->ToUtf8();
    }
    if (wishes.m_bKeepTime) {
        options.m_writtenTime = seen.m_nWrittenTime;
    }
    return StoreByLibrary(path, kind, wish, options);
}

} // namespace

EWriteProblem ProblemOfStoring(CAnalysisOutcome const& outcome, EContainer container) {
    CDecodeReport const& report = outcome.m_report;
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None ||
                         outcome.m_problem == EAnalysisProblem::NoBeat;
    if (outcome.m_problem == EAnalysisProblem::NoMemory) {
        return EWriteProblem::NoMemory;
    }
    if (!isHeard || report.m_container != container) {
        return container == EContainer::MpegAudio ? EWriteProblem::NotMpegAudio
                                                  : EWriteProblem::OtherContent;
    }
    if (report.EndsEarly()) {
        return EWriteProblem::EndsEarly;
    }
    bool const mustBeWhole = outcome.m_problem == EAnalysisProblem::NoBeat;
    bool const isTooBad =
        report.m_nBadPackets * kPacketsPerBad >= report.m_nPackets && report.m_nBadPackets > 0;
    return isTooBad || (mustBeWhole && report.IsDamaged()) ? EWriteProblem::Damaged
                                                           : EWriteProblem::None;
}

EWriteProblem StoreTempo(CString const& path, CAnalysisOutcome const& outcome, CString const& tempo,
                         CStoreTempoOptions const& wishes, CTagStoreReport* report) {
    CAudioKind const* const kind = FindAudioKind(path);
    bool const isLibrarys = kind != nullptr && kind->m_writing == ETagWriting::Library &&
                            wishes.m_types && wishes.m_types->Has(*kind);
    if (!isLibrarys && (kind == nullptr || kind->m_writing != ETagWriting::Id3)) {
        return EWriteProblem::OtherExtension;
    }
    EWriteProblem const problem = ProblemOfStoring(outcome, kind->m_container);
    if (problem != EWriteProblem::None) {
        return problem;
    }
    if (isLibrarys) {
        return StoreInOther(path, *kind, outcome.m_report.m_identity,
                            {tempo.ToUtf8(), wishes.m_sKey}, wishes);
    }
    return StoreInMp3(path, outcome.m_report.m_identity, tempo, wishes, report);
}

EWriteProblem StoreGivenTempo(CString const& path, CString const& tempo,
                              CStoreTempoOptions const& wishes) {
    CAudioKind const* const kind = FindAudioKind(path);
    if (kind != nullptr && kind->m_writing == ETagWriting::Library) {
        std::optional<CFileIdentity> const identity = IdentityAt(path.ToPath());
        return identity ? StoreInOther(path, *kind, *identity, {.m_sTempo = tempo.ToUtf8()}, wishes)
                        : EWriteProblem::NotWritable;
    }
    CTagStoreOptions options;
    options.m_bNeedsMpegChain = true;
    options.m_bKeepTime = wishes.m_bKeepTime;
    options.m_expectedText = wishes.m_tempoBefore;
    options.m_pWitness = wishes.m_pWitness;
    return StoreTagText(path, kTempoFrameId, tempo, options);
}

CString StoredTempoText(CString const& path, CString const& tempo) {
    CAudioKind const* const kind = FindAudioKind(path);
    bool const isLibrarys = kind != nullptr && kind->m_writing == ETagWriting::Library;
    return isLibrarys ? CString::FromUtf8(ReadShownTags(path).m_sTempo) : tempo;
}
