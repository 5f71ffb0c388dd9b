// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// What a file holds beside its audio, as it lies there: the boxes of MP4, the blocks of FLAC and
// the chunks of RIFF and AIFF byte by byte, the comments of Ogg and the items of APEv2 through
// TagLib.

#include "platform/FileKind.h"
#include "platform/TagChange.h"
#include "platform/TagMarks.h"
#include "platform/TagReaders.h"
#include "platform/TagStream.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavpackfile.h>
#include <taglib/xiphcomment.h>

namespace {

constexpr int kDeepest = 16;                // Fixed: more than any file's boxes.
constexpr std::size_t kMostItems = 100'000; // Fixed: likewise for their number.
constexpr std::int64_t kMostItemBytes = std::int64_t{64}
                                        << 20U; // Fixed: of one item, and its size.

std::uint64_t BigEndian(std::span<std::uint8_t const> bytes) {
    std::uint64_t value = 0;
    for (std::uint8_t const byte : bytes) {
        value = value << 8U | byte;
    }
    return value;
}

std::string Text(std::span<std::uint8_t const> bytes) {
    return {reinterpret_cast<char const*>(bytes.data()), bytes.size()};
}

/// True for what the wish may change, by a comment's or an item's name in upper case.
bool IsWished(std::string_view name, CTagWish const& wish) {
    return (name == "BPM" && wish.IsAboutTempo()) || (name == "INITIALKEY" && !wish.m_sKey.empty());
}

/// The items of one file while they are collected.
class CItems {
public:
    CItems(CSourceFile& source, CTagWish const& wish) : m_source(source), m_wish(wish) {}

    void TakeBoxes(std::int64_t begin, std::int64_t end, std::string const& path, int depth);
    void TakeBlocks();
    void TakeChunks();
    void TakeComments(TagLib::Ogg::XiphComment const& comment);
    void TakeApe(TagLib::APE::Tag const* tag);

    /// `size` bytes at `place` under a name.
    void Add(std::string name, std::int64_t place, std::int64_t size) {
        // What is too large to be a tag is told by its size.
        std::string const bytes = Text(ReadPiece(m_source, place, std::min(size, kMostItemBytes)));
        Add(std::move(name), bytes + "/" + std::to_string(size));
    }

    std::vector<CTagItem> Sorted() {
        std::ranges::sort(m_vItems);
        return std::move(m_vItems);
    }

private:
    void Add(std::string name, std::string bytes) {
        m_vItems.emplace_back(std::move(name), std::move(bytes));
    }
    void TakeBox(std::string const& path, std::int64_t place, std::int64_t size, int depth);
    void TakeMetadata(std::string const& path, std::int64_t place, std::int64_t size, int depth);
    void TakeItem(std::string const& type, std::int64_t place, std::int64_t size);
    void TakeCommentBlock(std::span<std::uint8_t const> block);

    CSourceFile& m_source;
    CTagWish const& m_wish;
    std::vector<CTagItem> m_vItems;
};

// Standard: ISO/IEC 14496-12, section 4.2: size, type, and a size of eight bytes when that is 1.
void CItems::TakeBoxes(std::int64_t begin, std::int64_t end, std::string const& path, int depth) {
    constexpr std::int64_t kHeader = 8;
    constexpr std::int64_t kLongHeader = 16;
    while (end - begin >= kHeader && m_vItems.size() < kMostItems) {
        std::vector<std::uint8_t> const header = ReadPiece(m_source, begin, kLongHeader);
        std::span<std::uint8_t const> const bytes(header);
        if (bytes.size() < static_cast<std::size_t>(kHeader)) {
            return;
        }
        std::uint64_t size = BigEndian(bytes.first(4));
        bool const isLong = size == 1 && bytes.size() == static_cast<std::size_t>(kLongHeader);
        size = isLong ? BigEndian(bytes.subspan(8, 8)) : size;
        auto const rest = static_cast<std::uint64_t>(end - begin);
        size = size == 0 || size > rest ? rest : size;
        std::int64_t const ahead = isLong ? kLongHeader : kHeader;
        if (size < static_cast<std::uint64_t>(ahead)) {
            return;
        }
        auto const length = static_cast<std::int64_t>(size);
        TakeBox(path + "/" + Text(bytes.subspan(4, 4)), begin + ahead, length - ahead, depth);
        begin += length;
    }
}

void CItems::TakeBox(std::string const& path, std::int64_t place, std::int64_t size, int depth) {
    constexpr std::array<std::string_view, 8> kContainers = {"moov", "udta", "trak", "mdia",
                                                             "minf", "stbl", "edts", "dinf"};
    // Room, the sound, and the tables of where it lies.
    constexpr std::array<std::string_view, 6> kPassed = {"free", "skip", "wide",
                                                         "mdat", "stco", "co64"};
    std::string const type = path.substr(path.size() - 4);
    if (depth < kDeepest && std::ranges::find(kContainers, type) != kContainers.end()) {
        TakeBoxes(place, place + size, path, depth + 1);
    } else if (type == "meta" && depth < kDeepest) {
        TakeMetadata(path, place, size, depth);
    } else if (path == "/moov/udta/meta/ilst") {
        TakeBoxes(place, place + size, "item", depth + 1);
    } else if (path.starts_with("item/")) {
        TakeItem(type, place, size);
    } else if (std::ranges::find(kPassed, type) == kPassed.end() &&
               path != "/moov/udta/meta/hdlr") { // made with the first item
        Add(path, place, size);
    }
}

/// A box of boxes behind four bytes, which QuickTime leaves out.
void CItems::TakeMetadata(std::string const& path, std::int64_t place, std::int64_t size,
                          int depth) {
    constexpr std::int64_t kVersionBytes = 4;
    bool const isBare = Text(ReadPiece(m_source, place + 4, 4)) == "hdlr";
    std::int64_t const ahead = isBare ? 0 : std::min(kVersionBytes, size);
    TakeBoxes(place + ahead, place + size, path, depth + 1);
}

/// An item of an MP4 file's list; freeform ones bear their name in a box of their own.
void CItems::TakeItem(std::string const& type, std::int64_t place, std::int64_t size) {
    std::string const bytes = Text(ReadPiece(m_source, place, std::min(size, kMostItemBytes)));
    std::string name = type;
    if (type == "----") {
        constexpr std::size_t kAhead = 8; // behind the word: version and flags, then the name
        std::size_t const word = bytes.find("name");
        std::size_t const data = bytes.find("data", word == std::string::npos ? 0 : word);
        if (word != std::string::npos && data != std::string::npos && data >= word + kAhead + 4) {
            name = "----:" + bytes.substr(word + kAhead, data - 4 - word - kAhead);
        }
    }
    bool const isTempo = type == "tmpo" && m_wish.IsAboutTempo();
    if (!isTempo && !IsWished(FreeName(name), m_wish)) {
        Add("item " + name, bytes + "/" + std::to_string(size));
    }
}

// Standard: RFC 9639, section 8: a byte for the type and the last block, three for the length.
void CItems::TakeBlocks() {
    constexpr std::int64_t kHeader = 4;
    constexpr unsigned kLast = 0x80;
    constexpr unsigned kPadding = 1;
    constexpr unsigned kComments = 4;
    bool isLast = false;
    for (std::int64_t place = 4; !isLast && m_vItems.size() < kMostItems;) {
        std::vector<std::uint8_t> const header = ReadPiece(m_source, place, kHeader);
        if (header.size() < static_cast<std::size_t>(kHeader)) {
            return;
        }
        unsigned const type = header[0] & ~kLast;
        isLast = (header[0] & kLast) != 0;
        auto const size = static_cast<std::int64_t>(BigEndian(std::span(header).subspan(1)));
        place += kHeader;
        if (type == kComments) {
            TakeCommentBlock(ReadPiece(m_source, place, size));
        } else if (type != kPadding) {
            Add("block " + std::to_string(type), place, size);
        }
        place += size;
    }
}

// Standard: Ogg Vorbis I, comment field: lengths of four bytes, the lowest first.
void CItems::TakeCommentBlock(std::span<std::uint8_t const> block) {
    auto const take = [&block](std::string& text) {
        if (block.size() < 4) {
            return false;
        }
        std::size_t const size = std::size_t{block[0]} | std::size_t{block[1]} << 8U |
                                 std::size_t{block[2]} << 16U | std::size_t{block[3]} << 24U;
        block = block.subspan(4);
        text = Text(block.first(std::min(size, block.size())));
        block = block.subspan(text.size());
        return true;
    };
    std::string text;
    (void)take(text); // who wrote the audio
    Add("vendor", text);
    block = block.subspan(std::min<std::size_t>(block.size(), 4)); // how many follow
    while (take(text) && m_vItems.size() < kMostItems) {
        // The same letters as for a freeform item.
        std::string const name = FreeName("----:" + text.substr(0, text.find('=')));
        if (!IsWished(name, m_wish)) {
            Add("comment " + name, text.substr(std::min(text.find('='), text.size())));
        }
    }
}

void CItems::TakeChunks() {
    constexpr std::int64_t kFileHeader = 12;
    constexpr std::int64_t kHeader = 8;
    bool const isAiff = Text(ReadPiece(m_source, 0, 4)) == "FORM";
    std::int64_t place = kFileHeader;
    while (m_vItems.size() < kMostItems) {
        std::vector<std::uint8_t> header = ReadPiece(m_source, place, kHeader);
        if (header.size() < static_cast<std::size_t>(kHeader)) {
            return;
        }
        if (!isAiff) {
            std::reverse(header.begin() + 4, header.end());
        }
        std::string const id = Text(std::span(header).first(4));
        auto const size = static_cast<std::int64_t>(BigEndian(std::span(header).subspan(4)));
        place += kHeader;
        bool const isSound = id == "data" || id == "SSND"; // hashed elsewhere
        if (isSound) {
            Add(id, std::to_string(size));
        } else if (id != "ID3 " && id != "id3 ") {
            Add(id, place, size);
        }
        place += size + size % 2;
    }
}

void CItems::TakeComments(TagLib::Ogg::XiphComment const& comment) {
    Add("vendor", comment.vendorID().to8Bit(true));
    for (auto const& [name, texts] : comment.fieldListMap()) {
        if (!IsWished(name.to8Bit(true), m_wish)) {
            Add("comment " + name.to8Bit(true), texts.toString("\n").to8Bit(true));
        }
    }
    // The list is the tag's, which is only read here.
    for (TagLib::FLAC::Picture const* picture :
         const_cast<TagLib::Ogg::XiphComment&>(comment).pictureList()) {
        TagLib::ByteVector const bytes = picture->render();
        Add("picture", std::string(bytes.data(), bytes.size()));
    }
}

void CItems::TakeApe(TagLib::APE::Tag const* tag) {
    if (tag == nullptr) {
        return;
    }
    for (auto const& [name, item] : tag->itemListMap()) {
        TagLib::ByteVector const bytes =
            item.type() == TagLib::APE::Item::Binary
                ? item.binaryData()
                : item.values().toString("\n").data(TagLib::String::UTF8);
        if (!IsWished(name.to8Bit(true), m_wish)) {
            Add("item " + name.to8Bit(true) + " " + std::to_string(item.type()),
                std::string(bytes.data(), bytes.size()));
        }
    }
}

template <typename File>
void TakeOgg(CTagStream& stream, CItems& items) {
    File file(&stream, false);
    if (file.isValid() && file.tag() != nullptr) {
        items.TakeComments(*file.tag());
    }
}

template <typename File>
void TakeApeFile(CTagStream& stream, CSourceFile& source, CItems& items) {
    File file(&stream, false);
    items.TakeApe(file.isValid() ? file.APETag(false) : nullptr);
    if (Text(ReadPiece(source, source.GetSize() - kOldTagBytes, 3)) == "TAG") {
        items.Add("ID3v1", source.GetSize() - kOldTagBytes, kOldTagBytes);
    }
}

} // namespace

std::vector<CTagItem> TagItems(int file, CTagWish const& wish) {
    CSourceFile source;
    if (source.Adopt(file) != EDecodeProblem::None) {
        return {};
    }
    CItems items(source, wish);
    CTagStream stream(source, 0);
    switch (TagMarkOf(ReadPiece(source, 0, kTagMarkBytes))) {
    case ETagMark::Mp4:
        items.TakeBoxes(0, source.GetSize(), "", 0);
        break;
    case ETagMark::Flac:
        items.TakeBlocks();
        break;
    case ETagMark::Wav:
    case ETagMark::Aiff:
        items.TakeChunks();
        break;
    case ETagMark::Vorbis:
        TakeOgg<TagLib::Ogg::Vorbis::File>(stream, items);
        break;
    case ETagMark::Opus:
        TakeOgg<TagLib::Ogg::Opus::File>(stream, items);
        break;
    case ETagMark::Speex:
        TakeOgg<TagLib::Ogg::Speex::File>(stream, items);
        break;
    case ETagMark::OggFlac:
        TakeOgg<TagLib::Ogg::FLAC::File>(stream, items);
        break;
    case ETagMark::WavPack:
        TakeApeFile<TagLib::WavPack::File>(stream, source, items);
        break;
    case ETagMark::MonkeysAudio:
        TakeApeFile<TagLib::APE::File>(stream, source, items);
        break;
    case ETagMark::LongWav:
    case ETagMark::Asf:
    case ETagMark::OtherContainer:
    case ETagMark::Unknown:
        break;
    }
    return items.Sorted();
}
