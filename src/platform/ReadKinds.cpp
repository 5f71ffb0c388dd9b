// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/ReadKinds.h"

#include <algorithm>
#include <array>

namespace {

struct CFormat {
    std::string_view m_sWord; // by which the library's lists know it
    std::string_view m_sName; // that an open file bears
    EContainer m_container;
};

// Fixed: what we open.
constexpr auto kFormats = std::to_array<CFormat>({
    {"mp3", "mp3", EContainer::MpegAudio},
    {"aac", "aac", EContainer::AdtsAac},
    {"mov", "mov,mp4,m4a,3gp,3g2,mj2", EContainer::Mp4},
    {"wav", "wav", EContainer::Wav},
    {"w64", "w64", EContainer::Wave64},
    {"aiff", "aiff", EContainer::Aiff},
    {"caf", "caf", EContainer::Caf},
    {"flac", "flac", EContainer::Flac},
    {"ogg", "ogg", EContainer::Ogg},
    {"ape", "ape", EContainer::MonkeysAudio},
    {"asf", "asf", EContainer::Asf},
    {"au", "au", EContainer::Au},
    {"matroska", "matroska,webm", EContainer::Matroska},
    {"tta", "tta", EContainer::TrueAudio},
    {"wv", "wv", EContainer::WavPack},
});

// Fixed: what music, and speech, comes in within these containers: MPEG and its heirs; without
// loss; with loss; samples as they are; differences of samples, and telephony. Of two for
// the same sound the one that is to decode it comes first, as in the library's own list.
constexpr char kDecoders[] =
    "mp1,mp1float,mp2,mp2float,mp3float,mp3,aac,aac_fixed,ac3,eac3,"
    "alac,ape,flac,tta,wavpack,wmalossless,"
    "dca,opus,speex,vorbis,wmapro,wmav1,wmav2,wmavoice,amrnb,amrwb,"
    "pcm_alaw,pcm_mulaw,pcm_s8,pcm_s8_planar,pcm_u8,pcm_s16be,pcm_s16be_planar,pcm_s16le,"
    "pcm_s16le_planar,pcm_u16be,pcm_u16le,pcm_s24be,pcm_s24le,pcm_s24le_planar,pcm_u24be,"
    "pcm_u24le,pcm_s32be,pcm_s32le,pcm_s32le_planar,pcm_u32be,pcm_u32le,pcm_s64be,pcm_s64le,"
    "pcm_f16le,pcm_f24le,pcm_f32be,pcm_f32le,pcm_f64be,pcm_f64le,"
    "adpcm_g722,adpcm_g726,adpcm_g726le,adpcm_ima_qt,adpcm_ima_wav,adpcm_ms,adpcm_yamaha,gsm,gsm_"
    "ms";

} // namespace

std::string FormatList() {
    std::string list;
    for (CFormat const& format : kFormats) {
        list.append(list.empty() ? "" : ",").append(format.m_sWord);
    }
    return list;
}

std::string DecoderList() {
    return kDecoders;
}

EContainer ContainerOf(std::string_view formatName) {
    auto const* const found = std::ranges::find(kFormats, formatName, &CFormat::m_sName);
    return found != kFormats.end() ? found->m_container : EContainer::Unknown;
}

bool IsReadDecoder(std::string_view name) {
    std::string_view rest = kDecoders;
    while (!rest.empty()) {
        std::string_view const word = rest.substr(0, rest.find(','));
        if (word == name) {
            return true;
        }
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
    return false;
}
