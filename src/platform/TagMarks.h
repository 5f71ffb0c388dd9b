// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// What kind of tags a file has, by its first bytes.
enum class ETagMark {
    Unknown,
    Flac,
    Vorbis,
    Opus,
    Speex,
    OggFlac,
    Mp4,
    Wav,
    LongWav, // RF64, or turned: read alone
    Aiff,
    Asf,
    WavPack,
    MonkeysAudio,
    OtherContainer, // Matroska, CAF, AU
};

constexpr std::int64_t kTagMarkBytes = 512; // Fixed: a mark, and the first page of an Ogg file.

/// `head`: a file's first bytes, behind an ID3v2 tag if there is one.
ETagMark TagMarkOf(std::span<std::uint8_t const> head);

constexpr std::int64_t kOldTagBytes = 128;   // Standard: ID3v1, at a file's end.
constexpr std::int64_t kApeFooterBytes = 32; // Standard: APEv2: mark, version, size, count, flags.
constexpr std::int64_t kMostId3Bytes = std::int64_t{32} << 20U; // Fixed: with any usual cover.

constexpr char kTempoItem[] = "tmpo"; // of MP4: a whole number

/// The last part of a freeform MP4 item's name, "----:com.apple.iTunes:BPM", its ASCII letters in
/// upper case; empty for another item.
std::string FreeName(std::string_view name);
