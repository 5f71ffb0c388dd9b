// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/TagMarks.h"

#include <algorithm>

namespace {

std::string_view Letters(std::span<std::uint8_t const> bytes, std::size_t place,
                         std::size_t count) {
    std::string_view const all(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return all.substr(std::min(place, all.size()), count);
}

/// An Ogg stream's first packet tells what it carries.
ETagMark OggMarkOf(std::span<std::uint8_t const> head) {
    constexpr std::size_t kPageHeaderBytes = 27; // Standard: RFC 3533, section 6.
    constexpr std::size_t kSegmentsOffset = 26;
    std::size_t const segments = head.size() > kSegmentsOffset ? head[kSegmentsOffset] : 0;
    std::string_view const packet = Letters(head, kPageHeaderBytes + segments, 8);
    return packet.starts_with("\x01vorbis") ? ETagMark::Vorbis
           : packet.starts_with("OpusHead") ? ETagMark::Opus
           : packet.starts_with("Speex   ") ? ETagMark::Speex
           : packet.starts_with("\x7F"
                                "FLAC")
               ? ETagMark::OggFlac
               : ETagMark::Unknown;
}

} // namespace

ETagMark TagMarkOf(std::span<std::uint8_t const> head) {
    std::string_view const mark = Letters(head, 0, 4);
    std::string_view const box = Letters(head, 4, 4);
    std::string_view const kind = Letters(head, 8, 4);
    if (mark == "fLaC") {
        return ETagMark::Flac;
    }
    if (mark == "OggS") {
        return OggMarkOf(head);
    }
    if (mark == "\x30\x26\xB2\x75") {
        return ETagMark::Asf;
    }
    if (box == "ftyp" || box == "moov" || box == "mdat" || box == "wide") {
        return ETagMark::Mp4;
    }
    if (kind == "WAVE") {
        return mark == "RIFF" ? ETagMark::Wav : ETagMark::LongWav;
    }
    if (mark == "FORM" && (kind == "AIFF" || kind == "AIFC")) {
        return ETagMark::Aiff;
    }
    if (mark == "\x1A\x45\xDF\xA3" || mark == "caff" || mark == ".snd") {
        return ETagMark::OtherContainer;
    }
    return mark == "wvpk"   ? ETagMark::WavPack
           : mark == "MAC " ? ETagMark::MonkeysAudio
                            : ETagMark::Unknown;
}

std::string FreeName(std::string_view name) {
    if (!name.starts_with("----:")) {
        return {};
    }
    std::string text(name.substr(name.rfind(':') + 1));
    for (char& letter : text) {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return text;
}
