// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// A file of chunks: an id of four characters, a size, the body, padded to an even length. RIFF
// writes numbers from the lowest byte on, AIFF from the highest.

#include "base/Utf16.h"
#include "platform/TagMarks.h"
#include "platform/TagReaders.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace {

constexpr std::int64_t kFileHeaderBytes = 12;   // Standard: id, size, kind.
constexpr std::int64_t kChunkHeaderBytes = 8;   // Standard: id and size.
constexpr int kMostChunks = 10'000;             // Fixed: more than any file has.
constexpr std::int64_t kMostTextBytes = 65'536; // Fixed: far more than a title.

std::string_view Letters(std::span<std::uint8_t const> bytes) {
    return {reinterpret_cast<char const*>(bytes.data()), bytes.size()};
}

std::uint32_t Number(std::span<std::uint8_t const> bytes, bool isBigEndian) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= std::uint32_t{bytes[i]} << (isBigEndian ? 24 - 8 * i : 8 * i);
    }
    return value;
}

/// A text up to its first zero. These chunks tell no encoding: what isn't UTF-8 is Latin-1.
std::string ChunkText(std::span<std::uint8_t const> bytes) {
    std::string_view text = Letters(bytes);
    text = text.substr(0, text.find('\0'));
    std::u16string units;
    for (char const byte : text) {
        units += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return DecodeUtf8(text) ? std::string(text) : EncodeUtf8(units);
}

/// The texts of a RIFF list of kind INFO.
void TakeInfo(std::span<std::uint8_t const> list, COtherTags& tags) {
    while (list.size() >= static_cast<std::size_t>(kChunkHeaderBytes)) {
        std::string_view const id = Letters(list.first(4));
        std::size_t const size = Number(list.subspan(4), false);
        list = list.subspan(kChunkHeaderBytes);
        std::string const text = ChunkText(list.first(std::min(size, list.size())));
        if (id == "INAM") {
            tags.m_sTitle = text;
        } else if (id == "IART") {
            tags.m_sArtist = text;
        } else if (id == "IPRD") {
            tags.m_sAlbum = text;
        } else if (id == "IBPM") {
            tags.m_vTempos.push_back(text);
        }
        list = list.subspan(std::min(size + size % 2, list.size()));
    }
}

/// Takes a chunk whose body begins at `place`.
void TakeChunk(CSourceFile& source, std::string_view id, std::int64_t place, std::int64_t size,
               COtherTags& tags) {
    auto const body = [&](std::int64_t most) {
        return ReadPiece(source, place, std::min(size, most));
    };
    if (id == "ID3 " || id == "id3 ") {
        tags.m_vId3.push_back(body(kMostId3Bytes));
    } else if (id == "LIST") {
        std::vector<std::uint8_t> const list = body(kMostTextBytes);
        std::span<std::uint8_t const> const bytes(list);
        if (bytes.size() > 4 && Letters(bytes.first(4)) == "INFO") {
            TakeInfo(bytes.subspan(4), tags);
        }
    } else if (id == "NAME") {
        tags.m_sTitle = ChunkText(body(kMostTextBytes));
    } else if (id == "AUTH") {
        tags.m_sArtist = ChunkText(body(kMostTextBytes));
    }
}

} // namespace

std::vector<std::uint8_t> ReadPiece(CSourceFile& source, std::int64_t place, std::int64_t size) {
    std::int64_t const there = std::max<std::int64_t>(source.GetSize() - place, 0);
    std::vector<std::uint8_t> bytes(
        place < 0 ? 0 : static_cast<std::size_t>(std::clamp<std::int64_t>(size, 0, there)));
    std::size_t done = 0;
    bool isMore = source.Seek(place) == place;
    while (isMore && done < bytes.size()) {
        std::int64_t const count = source.Read(bytes.data() + done, bytes.size() - done);
        isMore = count > 0;
        done += static_cast<std::size_t>(std::max<std::int64_t>(count, 0));
    }
    bytes.resize(done);
    return bytes;
}

void ReadChunkTags(CSourceFile& source, COtherTags& tags) {
    std::vector<std::uint8_t> const mark = ReadPiece(source, 0, 4);
    bool const isBigEndian = Letters(mark) == "FORM" || Letters(mark) == "RIFX";
    std::int64_t place = kFileHeaderBytes;
    for (int i = 0; i < kMostChunks; ++i) {
        std::vector<std::uint8_t> const header = ReadPiece(source, place, kChunkHeaderBytes);
        if (header.size() < static_cast<std::size_t>(kChunkHeaderBytes)) {
            return;
        }
        std::span<std::uint8_t const> const bytes(header);
        std::int64_t const size = Number(bytes.subspan(4), isBigEndian);
        place += kChunkHeaderBytes;
        TakeChunk(source, Letters(bytes.first(4)), place, size, tags);
        place += size + size % 2;
    }
}
