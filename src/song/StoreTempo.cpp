// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/StoreTempo.h"

#include "song/AudioKinds.h"

namespace {

constexpr char kTempoFrameId[] = "TBPM";     // Standard: ID3v2.3.0, section 4.2.1.
constexpr std::int64_t kPacketsPerBad = 100; // Fixed: one bad packet in as many is too much.

} // namespace

EWriteProblem ProblemOfStoring(CAnalysisOutcome const& outcome) {
    CDecodeReport const& report = outcome.m_report;
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None ||
                         outcome.m_problem == EAnalysisProblem::NoBeat;
    if (outcome.m_problem == EAnalysisProblem::NoMemory) {
        return EWriteProblem::NoMemory;
    }
    if (!isHeard || report.m_container != EContainer::MpegAudio) {
        return EWriteProblem::NotMpegAudio;
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
    if (kind == nullptr || kind->m_writing == ETagWriting::None) {
        return EWriteProblem::OtherExtension;
    }
    EWriteProblem const problem = ProblemOfStoring(outcome);
    if (problem != EWriteProblem::None) {
        return problem;
    }
    CTagStoreOptions options;
    options.m_expected = outcome.m_report.m_identity;
    options.m_expectedText = wishes.m_tempoBefore;
    options.m_bKeepTime = wishes.m_bKeepTime;
    options.m_pWitness = wishes.m_pWitness;
    return StoreTagText(path, kTempoFrameId, tempo, options, report);
}
