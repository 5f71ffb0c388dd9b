// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "records/Journal.h"

#include <optional>
#include <string_view>
#include <vector>

/// How a tempo is put right: the old one times a ratio, or a value.
struct CTempoFix {
    int m_nTimes = 0;
    int m_nOver = 0;
    double m_dBpm = 0.0; // 0 when it is a ratio

    [[nodiscard]] bool IsRatio() const { return m_nOver != 0; }

    bool operator==(CTempoFix const&) const = default;
};

/// The fix that a word stands for: x2, /2, 3:2, 2:3, 4:3, 3:4, or = and a tempo from 20 to 999.
/// Returns: nothing for any other word.
std::optional<CTempoFix> TempoFixOf(std::string_view word);

/// True from 20 to 999, as tempos in tags are believed: no correction leads elsewhere.
bool IsTempoInRange(double bpm);

/// What `fix` makes of the tempo `bpm`; nothing is rounded.
double FixedTempo(CTempoFix const& fix, double bpm);

/// The tempo of beats that were tapped at these seconds, in their order: the mean of the spans
/// between them. Returns: nothing for fewer than four, or for no tempo from 20 to 999.
std::optional<double> TappedTempo(std::vector<double> const& seconds);

/// How a correction is written.
struct CCorrectionOptions {
    EJournalWriter m_eWriter = EJournalWriter::Fix;
    bool m_bKeepTime = false;   // the file's time of the last write stays
    bool m_bOtherKinds = false; // kinds beside MP3 are written too
    /// What the tag said when the tempo was shown to whoever wants it replaced; nothing: whatever
    /// stands there now.
    std::optional<CString> m_textBefore = {};
};

/// Writes `text` as the tempo of the file at `path`, as set by hand, unless somebody has set
/// another one since. Nobody needs to have decoded it: in an MP3 file, MPEG frames must follow the
/// tag. Thread: any.
EWriteProblem StoreCorrection(CString const& path, CString const& text, CJournal& journal,
                              CCorrectionOptions const& options);
