// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

class CString;
struct CStoreTempoOptions;
struct CTempoCandidates;
enum class EAnalysisProblem;

/// What a person may have otherwise than the list has it by itself. Made without a word, it is the
/// factory state: every rule of the list as it always was.
struct CWishes {
    bool m_bOtherKinds = false;      ///< Kinds beside those of the window's list come into it too.
    bool m_bWriteOtherKinds = false; ///< Their tags, and those of the others, are written too.
    bool m_bOnlyLook = false;        ///< Nothing is written.
    bool m_bKeepTime = false;        ///< The time of a file's last write stays.
    bool m_bZeros = true;            ///< Songs without a tempo show 0.00 and get it in their tag.
    bool m_bLikelyOctave = false;    ///< The likeliest reading of a tempo is taken.
    int m_nDecimals = 2;             ///< Of a tempo that was heard, 0 to 2.
    double m_dSlowest = 0.0;         ///< Tempos are folded into this range, in BPM, whose end is
    double m_dFastest = 0.0;         ///< at least twice its begin; both 0: they are not.

    bool operator==(CWishes const&) const = default;
};

/// The text that a row gets for the tempo `heard`, which has two decimals. In the factory state it
/// is `heard` itself; `candidates` count only when the likeliest is wished for.
CString WishedTempo(CWishes const& wishes, CString const& heard,
                    CTempoCandidates const& candidates);

/// May a song with this outcome have its tempo stored at all, as far as wishes go?
bool IsStoringWished(CWishes const& wishes, EAnalysisProblem problem);

/// Adds to `options` how a tempo is to be stored.
void ApplyWishes(CWishes const& wishes, CStoreTempoOptions& options);
