// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Tags written by hand, byte by byte, for the tests of the tag code and what lies over it.

using TagBytes = std::vector<std::uint8_t>;

TagBytes Joined(std::initializer_list<TagBytes> parts);
TagBytes Ascii(std::string_view text);
TagBytes Zeros(std::size_t count);

/// A tag of major version `version`: header, then `body`.
TagBytes TagOf(std::uint8_t version, TagBytes const& body, std::uint8_t flags = 0);

/// The ten bytes of a tag's header that claims `size` bytes of body.
TagBytes TagHeader(std::uint8_t version, std::uint32_t size, std::uint8_t flags = 0);

/// One frame of version 2.2, 2.3 or 2.4. The ids have three characters in 2.2, four otherwise.
TagBytes Frame22(std::string_view id, TagBytes const& body);
TagBytes Frame23(std::string_view id, TagBytes const& body, std::uint8_t statusFlags = 0,
                 std::uint8_t formatFlags = 0);
TagBytes Frame24(std::string_view id, TagBytes const& body, std::uint8_t statusFlags = 0,
                 std::uint8_t formatFlags = 0);

/// Body of a text frame in ISO-8859-1.
TagBytes Latin1Text(std::string_view text);

/// Body of a text frame as Tactus writes it: 01, FF FE, little-endian units, 00 00.
TagBytes WrittenText(std::string_view ascii);

/// `count` bytes that stand for audio: no two neighbours alike, none of them zero.
TagBytes FakeAudio(std::size_t count);

/// `count` frames of MPEG-1 layer III at 128 kbit/s and 44100 Hz: headers of which each lies where
/// the one before says, 417 bytes on, and bytes that are no sound between them.
TagBytes MpegAudio(std::size_t count);

inline TagBytes const kTitle = Frame23("TIT2", Latin1Text("Title")); // 16 bytes
inline TagBytes const kTempo = Frame23("TBPM", WrittenText("128"));  // 21 bytes
inline TagBytes const kSound = MpegAudio(4);

/// The 128 bytes of an ID3v1 trailer; texts are filled up with spaces.
TagBytes Id3v1Trailer(std::string_view title, std::string_view second, std::string_view third,
                      std::string_view year, std::uint8_t genre);
