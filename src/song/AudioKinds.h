// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string_view>

class CString;

/// How the tag of a kind of file is written.
enum class ETagWriting { None, Id3 };

/// One kind of music file, by the extension of its name.
struct CAudioKind {
    std::string_view m_sExtension; // lower case, without the point
    bool m_bListed = false;        // in the window's list of supported extensions
    ETagWriting m_writing = ETagWriting::None;
};

/// Every kind that is read, in the order in which the window's list names them.
std::span<CAudioKind const> AudioKinds();

/// The extensions of the window's list as one text: "wav;mp3;aiff;aif;caf;m4a".
CString ListedExtensions();

/// The kind of the file at `path` by its extension, which is compared whole and without regard to
/// the case of its ASCII letters; null for any other.
CAudioKind const* FindAudioKind(CString const& path);
