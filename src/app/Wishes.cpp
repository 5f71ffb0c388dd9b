// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Wishes.h"

#include "base/CString.h"
#include "song/AnalysisProblem.h"
#include "song/SongCandidates.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

namespace {

constexpr int kTagDecimals = 2; // Fixed: decimals of a tempo in the factory state.

/// Every kind whose tag can be written.
CKindChoice WritableKinds() {
    CKindChoice kinds;
    for (CAudioKind const& kind : AudioKinds()) {
        if (kind.m_writing != ETagWriting::None) {
            kinds.Add(kind.m_sExtension);
        }
    }
    return kinds;
}

} // namespace

CString WishedTempo(CWishes const& wishes, CString const& heard,
                    CTempoCandidates const& candidates) {
    double const bpm = LeadingNumber(heard);
    if (!(bpm > 0.0)) {
        return wishes.m_bZeros ? heard : CString();
    }
    double wished = bpm;
    if (wishes.m_bLikelyOctave && !candidates.m_vCandidates.empty()) {
        wished = static_cast<double>(candidates.m_vCandidates.front().m_fBpm);
    }
    if (wishes.m_dSlowest > 0.0) {
        wished = FoldedTempo(wished, wishes.m_dSlowest, wishes.m_dFastest);
    }
    bool const isAsHeard = wished == bpm && wishes.m_nDecimals == kTagDecimals;
    return isAsHeard ? heard : CString(RoundedTempo(wished, wishes.m_nDecimals).c_str());
}

bool IsStoringWished(CWishes const& wishes, EAnalysisProblem problem) {
    return !wishes.m_bOnlyLook && (wishes.m_bZeros || problem != EAnalysisProblem::NoBeat);
}

void ApplyWishes(CWishes const& wishes, CStoreTempoOptions& options) {
    options.m_bKeepTime = wishes.m_bKeepTime;
    if (wishes.m_bWriteOtherKinds) {
        options.m_types = WritableKinds();
    }
}
