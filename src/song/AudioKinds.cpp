// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/AudioKinds.h"

#include "base/CString.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

// Fixed: the kinds that are read. Only MP3 files are written unless more is asked for.
constexpr auto kKinds = std::to_array<CAudioKind>({
    {"wav", "wav", true, ETagWriting::Library, EContainer::Wav},
    {"mp3", "mp3", true, ETagWriting::Id3, EContainer::MpegAudio},
    {"aiff", "aiff", true, ETagWriting::Library, EContainer::Aiff},
    {"aif", "aiff", true, ETagWriting::Library, EContainer::Aiff},
    {"caf", "caf", true, ETagWriting::None},
    {"m4a", "m4a", true, ETagWriting::Library, EContainer::Mp4},
    {"aac", "aac", false, ETagWriting::None},
    {"aifc", "aiff", false, ETagWriting::Library, EContainer::Aiff},
    {"ape", "ape", false, ETagWriting::Library, EContainer::MonkeysAudio},
    {"au", "au", false, ETagWriting::None},
    {"flac", "flac", false, ETagWriting::Library, EContainer::Flac},
    {"m4b", "m4a", false, ETagWriting::Library, EContainer::Mp4},
    {"mka", "mka", false, ETagWriting::None},
    {"mov", "mov", false, ETagWriting::None},
    {"mp2", "mp2", false, ETagWriting::None},
    {"mp4", "mp4", false, ETagWriting::Library, EContainer::Mp4},
    {"oga", "ogg", false, ETagWriting::Library, EContainer::Ogg},
    {"ogg", "ogg", false, ETagWriting::Library, EContainer::Ogg},
    {"opus", "opus", false, ETagWriting::Library, EContainer::Ogg},
    {"rf64", "wav", false, ETagWriting::None},
    {"snd", "au", false, ETagWriting::None},
    {"tta", "tta", false, ETagWriting::None},
    {"w64", "w64", false, ETagWriting::None},
    {"weba", "webm", false, ETagWriting::None},
    {"webm", "webm", false, ETagWriting::None},
    {"wma", "wma", false, ETagWriting::None},
    {"wv", "wv", false, ETagWriting::Library, EContainer::WavPack},
});

/// Takes the next word off the front of a list.
std::string TakeWord(std::string_view& list) {
    std::size_t const comma = std::min(list.find(','), list.size());
    std::string word(list.substr(0, comma));
    list.remove_prefix(std::min(comma + 1, list.size()));
    return word;
}

/// `word` as the table has it: ASCII letters in lower case, no point before them.
std::string TableWord(std::string word) {
    word.erase(0, word.starts_with('.') ? 1 : 0);
    for (char& letter : word) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return word;
}

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

std::string CKindChoice::Add(std::string_view names) {
    bool isMore = true;
    while (isMore) {
        isMore = names.find(',') != std::string_view::npos;
        std::string const word = TakeWord(names);
        std::string const name = TableWord(word);
        bool isKnown = false;
        for (std::size_t i = 0; i < kKinds.size(); ++i) {
            bool const isNamed = kKinds[i].m_sExtension == name || kKinds[i].m_sType == name;
            m_chosen[i] = m_chosen[i] || isNamed;
            isKnown = isKnown || isNamed;
        }
        if (!isKnown) {
            return word.empty() ? "," : word;
        }
    }
    return {};
}

bool CKindChoice::Has(CAudioKind const& kind) const {
    static_assert(kKinds.size() <= kMostKinds);
    return m_chosen[static_cast<std::size_t>(&kind - kKinds.data())];
}
