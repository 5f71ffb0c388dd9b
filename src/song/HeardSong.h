// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AnalysisProblem.h"
#include "song/Harmony.h"
#include "song/SongFacts.h"
#include "song/TempoCandidates.h"

#include <optional>
#include <string>

/// What one hearing of a song brought, as far as it is told of again.
struct CHeardSong {
    CAnalysisOutcome m_outcome;
    std::string m_sTempo;                         // "%3.2f", as it goes into tags
    bool m_bByLength = false;                     // the tempo follows from a clip's length
    std::optional<CTempoCandidates> m_candidates; // once they were asked for
    std::optional<CHarmony> m_harmony = {};       // likewise
    std::optional<CSongFacts> m_facts = {};       // likewise

    bool operator==(CHeardSong const&) const = default;
};

/// All that `profile` brought, for which beats, harmony and envelopes were asked for.
/// `keepsEnvelopes`: they are among its facts. Of a run that was cancelled it says just that.
[[nodiscard]] CHeardSong HeardSongOf(CSongProfile const& profile, bool keepsEnvelopes);
