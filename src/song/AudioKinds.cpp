// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/AudioKinds.h"

#include "base/CString.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

// Fixed: the kinds that are read. Only MP3 files are written.
constexpr std::array<CAudioKind, 6> kKinds{{
    {"wav", true, ETagWriting::None},
    {"mp3", true, ETagWriting::Id3},
    {"aiff", true, ETagWriting::None},
    {"aif", true, ETagWriting::None},
    {"caf", true, ETagWriting::None},
    {"m4a", true, ETagWriting::None},
}};

} // namespace

std::span<CAudioKind const> AudioKinds() {
    return kKinds;
}

CString ListedExtensions() {
    std::string joined;
    for (CAudioKind const& kind : kKinds) {
        if (kind.m_bListed) {
            joined.append(joined.empty() ? "" : ";").append(kind.m_sExtension);
        }
    }
    return {joined.c_str()};
}

CAudioKind const* FindAudioKind(CString const& path) {
    CString extension;
    if (CFileUtil::GetLowerCaseFileExt(path, extension) != kStatusOk) {
        return nullptr;
    }
    std::string const name = extension.ToUtf8();
    auto const* const found = std::ranges::find(kKinds, name, &CAudioKind::m_sExtension);
    return found != kKinds.end() ? found : nullptr;
}
