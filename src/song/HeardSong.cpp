// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/HeardSong.h"

#include "song/SongCandidates.h"
#include "song/SongProfile.h"
#include "song/TempoText.h"

CHeardSong HeardSongOf(CSongProfile const& profile, bool keepsEnvelopes) {
    CHeardSong heard;
    heard.m_outcome = profile.m_outcome;
    if (profile.m_bCancelled) {
        heard.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
        heard.m_outcome.m_report.m_problem = EDecodeProblem::Cancelled;
    }
    if (heard.m_outcome.m_problem == EAnalysisProblem::None) {
        heard.m_sTempo = TempoText(static_cast<double>(profile.m_results.GetBpm()));
        heard.m_bByLength = profile.m_bByLength;
        heard.m_candidates = CandidatesOf(profile);
        heard.m_facts = FactsOf(profile, keepsEnvelopes);
    }
    return heard;
}
