// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"

#include <bitset>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

class CString;

/// How the tag of a kind of file is written.
enum class ETagWriting {
    None,
    Id3,     // by our own writer, always
    Library, // by TagLib, on request
};

/// One kind of music file, by the extension of its name.
struct CAudioKind {
    std::string_view m_sExtension; // lower case, without the point
    std::string_view m_sType;      // what it has in common with others: "aiff" of aif and aifc
    bool m_bListed = false;        // in the window's list of supported extensions
    ETagWriting m_writing = ETagWriting::None;
    EContainer m_container =
        EContainer::Unknown; // what a file must have been read as to be written
};

/// Every kind that is read. Those of the window's list come first, in its order.
std::span<CAudioKind const> AudioKinds();

/// The extensions of the window's list as one text: "wav;mp3;aiff;aif;caf;m4a".
CString ListedExtensions();

/// The kind of the file at `path` by its extension, which is compared whole and without regard to
/// the case of its ASCII letters; null for any other.
CAudioKind const* FindAudioKind(CString const& path);

/// Some of the kinds, chosen by name.
class CKindChoice {
public:
    /// Takes in the kinds that `names` tells, separated by commas: the extension of one, or the
    /// type of several ("aiff"), in either case, with or without a point before it. Returns: the
    /// first word that names none; empty when all do.
    std::string Add(std::string_view names);

    /// `kind` is one of `AudioKinds`.
    [[nodiscard]] bool Has(CAudioKind const& kind) const;

private:
    static constexpr std::size_t kMostKinds = 64; // Fixed: more than there are.

    std::bitset<kMostKinds> m_chosen;
};
