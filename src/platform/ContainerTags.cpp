// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/TagReaders.h"

#include "base/Utf16.h"
#include "platform/AudioInput.h"
#include "platform/DecodeWatch.h"

#include <chrono>
#include <initializer_list>

namespace {

constexpr std::chrono::milliseconds kHeaderPatience(2000); // Fixed: a header takes no longer.

std::string TextOf(AVDictionary const* texts, char const* name) {
    AVDictionaryEntry const* const entry = av_dict_get(texts, name, nullptr, 0);
    std::string const text = entry != nullptr ? entry->value : "";
    return DecodeUtf8(text) ? text : std::string();
}

void Fill(std::string& text, AVDictionary const* texts,
          std::initializer_list<char const*> const& names) {
    for (char const* name : names) {
        text = text.empty() ? TextOf(texts, name) : text;
    }
}

void TakeTexts(AVDictionary const* texts, COtherTags& tags) {
    Fill(tags.m_sTitle, texts, {"title"});
    Fill(tags.m_sArtist, texts, {"artist", "author"});
    Fill(tags.m_sAlbum, texts, {"album"});
    Fill(tags.m_sKey, texts, {"initial_key", "initialkey", "key"});
    for (char const* name : {"bpm", "tempo"}) {
        if (std::string const tempo = TextOf(texts, name); !tempo.empty()) {
            tags.m_vTempos.push_back(tempo);
        }
    }
}

} // namespace

void ReadContainerTags(CSourceFile& source, COtherTags& tags) {
    CDecodeWatch watch(nullptr, kHeaderPatience);
    CAudioInput input(source, watch);
    if (input.Open("", false) < 0) {
        return;
    }
    AVFormatContext const* const format = input.Get();
    TakeTexts(format->metadata, tags);
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        if (format->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
            TakeTexts(format->streams[i]->metadata, tags);
        }
    }
}
