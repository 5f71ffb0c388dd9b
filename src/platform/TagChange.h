// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <vector>

// Writing into tags beside ID3v2 in front of MPEG audio, by TagLib. Callers work on a private copy
// of the file and prove afterwards what came of it.

/// What is to stand in a tag; an empty text is no wish.
struct CTagWish {
    std::string m_sTempo = {}; // a number with a point
    std::string m_sKey = {};
    bool m_bNoTempo = false; // what tells a tempo is taken out; the texts don't count then

    /// True when what tells the tempo may change.
    [[nodiscard]] bool IsAboutTempo() const { return m_bNoTempo || !m_sTempo.empty(); }
};

/// What came of a wish.
enum class ETagChange {
    Refused, // not one of the kinds that can be written, or a form of it that can't
    Same,    // it stands there already
    Changed,
    Failed, // the system refused; see the error
};

/// How far a change goes.
enum class ETagDepth {
    Trial, // only looked at
    Write,
};

/// Looks into the file behind the descriptor, and with `Write` puts the wish into its tag: the item
/// `tmpo` and, for a fraction, the freeform item "BPM" of MP4; the comment BPM of FLAC, Vorbis,
/// Opus and Speex; the frame TBPM of the ID3 chunk of WAV and AIFF; the APEv2 item BPM of WavPack
/// and Monkey's Audio. The key is the freeform item or comment INITIALKEY, or the frame TKEY.
/// `error`: the system's number of `Failed`.
ETagChange ChangeTags(int file, CTagWish const& wish, ETagDepth depth, int& error);

/// Name and bytes.
using CTagItem = std::pair<std::string, std::string>;

/// All that a file of these kinds holds beside its audio and what `wish` may change, sorted: items,
/// comments, pictures, blocks and boxes. An ID3v2 tag is one item only in front of a file; the one
/// in a chunk is the caller's to compare.
std::vector<CTagItem> TagItems(int file, CTagWish const& wish);
