// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: open the file; take an ID3v2 tag off its front; know the kind by the bytes behind it
// and let its reader in; look for what programs put behind the audio.

#include "platform/OtherTags.h"

#include "base/Utf16.h"
#include "platform/FileKind.h"
#include "platform/TagLibVersions.h"
#include "platform/TagMarks.h"
#include "platform/TagReaders.h"
#include "platform/TagStream.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <string_view>
#include <taglib/apefooter.h>
#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/mp4file.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/tfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

namespace {

using TagLib::String;
using TagLib::StringList;

constexpr unsigned kLongestText = 65'536; // Fixed: characters; what is longer is no title.
constexpr std::string_view kFooterMark = "APETAGEX"; // Standard: likewise.

std::string_view Letters(std::vector<std::uint8_t> const& bytes, std::size_t place,
                         std::size_t count) {
    std::string_view const all(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return all.substr(std::min(place, all.size()), count);
}

/// UTF-8 up to the first zero.
std::string Utf8Of(String const& text) {
    std::string const bytes = text.substr(0, kLongestText).to8Bit(true);
    return bytes.substr(0, bytes.find('\0'));
}

std::string Utf8Of(StringList const& texts) {
    return Utf8Of(texts.toString(", "));
}

void AddTempo(std::string const& text, COtherTags& tags) {
    if (!text.empty()) {
        tags.m_vTempos.push_back(text);
    }
}

void TakeComments(TagLib::Ogg::XiphComment const* comment, COtherTags& tags) {
    if (comment == nullptr) {
        return;
    }
    TagLib::Ogg::FieldListMap const& fields = comment->fieldListMap();
    auto const text = [&fields](char const* name) {
        return fields.contains(name) ? Utf8Of(fields[name]) : std::string();
    };
    tags.m_sTitle = text("TITLE");
    tags.m_sArtist = text("ARTIST");
    tags.m_sAlbum = text("ALBUM");
    tags.m_sKey = fields.contains("INITIALKEY") ? text("INITIALKEY") : text("KEY");
    for (char const* name : {"BPM", "TEMPO"}) {
        AddTempo(fields.contains(name) ? Utf8Of(fields[name].front()) : std::string(), tags);
    }
}

void ReadFlac(CTagStream& stream, COtherTags& tags) {
    TagLib::FLAC::File file = FlacFileIn(stream);
    TakeComments(file.hasXiphComment() ? file.xiphComment() : nullptr, tags);
}

template <typename File>
void ReadOggFile(CTagStream& stream, COtherTags& tags) {
    File file(&stream, false);
    TakeComments(file.isValid() ? file.tag() : nullptr, tags);
}

/// True when the number `text`, rounded or cut, is `whole`.
bool IsFractionOf(std::string const& text, int whole) {
    double value = 0.0;
    (void)std::from_chars(text.data(), text.data() + text.size(), value);
    return value > whole - 1.0 && value < whole + 1.0;
}

void ReadMp4(CTagStream& stream, COtherTags& tags) {
    TagLib::MP4::File file(&stream, false);
    TagLib::MP4::Tag const* const tag = file.isValid() ? file.tag() : nullptr;
    if (tag == nullptr) {
        return;
    }
    tags.m_sTitle = Utf8Of(tag->title());
    tags.m_sArtist = Utf8Of(tag->artist());
    tags.m_sAlbum = Utf8Of(tag->album());
    for (auto const& [name, item] : tag->itemMap()) {
        std::string const freeName = FreeName(Utf8Of(name));
        if (freeName == "BPM" || freeName == "TEMPO") {
            AddTempo(Utf8Of(item.toStringList()), tags);
        } else if (freeName == "INITIALKEY" || (freeName == "KEY" && tags.m_sKey.empty())) {
            tags.m_sKey = Utf8Of(item.toStringList());
        }
    }
    int const whole = tag->contains(kTempoItem) ? tag->item(kTempoItem).toInt() : 0;
    if (whole > 0) {
        // A fraction that is another number is left from before somebody changed this one.
        std::erase_if(tags.m_vTempos,
                      [whole](std::string const& text) { return !IsFractionOf(text, whole); });
        AddTempo(std::to_string(whole), tags);
    }
}

/// A file in which the library looks for nothing by itself.
class CPlainFile final : public TagLib::File {
public:
    explicit CPlainFile(TagLib::IOStream* stream) : TagLib::File(stream) {}
    TagLib::Tag* tag() const override { return nullptr; }
    TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }
};

/// The APEv2 tag whose footer ends `behind` bytes before the file does.
void ReadApe(CSourceFile& source, std::int64_t behind, COtherTags& tags) {
    std::int64_t const footer = source.GetSize() - behind - kApeFooterBytes;
    if (footer < 0 || Letters(ReadPiece(source, footer, kApeFooterBytes), 0, 8) != kFooterMark) {
        return;
    }
    CTagStream stream(source, 0);
    CPlainFile file(&stream);
    TagLib::APE::Tag const tag(&file, footer);
    TagLib::APE::ItemListMap const& items = tag.itemListMap();
    auto const text = [&items](char const* name) {
        bool const isText = items.contains(name) && items[name].type() == TagLib::APE::Item::Text;
        return isText ? Utf8Of(items[name].values()) : std::string();
    };
    tags.m_sTitle = text("TITLE");
    tags.m_sArtist = text("ARTIST");
    tags.m_sAlbum = text("ALBUM");
    tags.m_sKey = items.contains("INITIALKEY") ? text("INITIALKEY") : text("KEY");
    AddTempo(text("BPM"), tags);
    AddTempo(text("TEMPO"), tags);
}

/// A field of an ID3v1 tag, without the blanks behind it: UTF-8, else Latin-1.
std::string OldText(std::vector<std::uint8_t> const& tag, std::size_t place) {
    constexpr std::size_t kFieldBytes = 30;
    std::string_view text = Letters(tag, place, kFieldBytes);
    text = text.substr(0, text.find('\0'));
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    return DecodeUtf8(text) ? std::string(text) : Utf8Of(String(std::string(text)));
}

/// Returns: the bytes that it takes up.
std::int64_t ReadOldTag(CSourceFile& source, COtherTags& tags) {
    std::int64_t const place = source.GetSize() - kOldTagBytes;
    std::vector<std::uint8_t> const tag =
        place > 0 ? ReadPiece(source, place, kOldTagBytes) : std::vector<std::uint8_t>();
    if (Letters(tag, 0, 3) != "TAG") {
        return 0;
    }
    tags.m_sOldTitle = OldText(tag, 3);
    tags.m_sOldArtist = OldText(tag, 33);
    tags.m_sOldAlbum = OldText(tag, 63);
    return kOldTagBytes;
}

/// Lets the reader of the kind in whose file `begin` is the place behind an ID3v2 tag.
void ReadByContent(CSourceFile& source, std::int64_t begin, COtherTags& tags) {
    CTagStream stream(source, begin);
    switch (TagMarkOf(ReadPiece(source, begin, kTagMarkBytes))) {
    case ETagMark::Flac:
        tags.m_bOwnFirst = true;
        ReadFlac(stream, tags);
        break;
    case ETagMark::Vorbis:
        ReadOggFile<TagLib::Ogg::Vorbis::File>(stream, tags);
        break;
    case ETagMark::Opus:
        ReadOggFile<TagLib::Ogg::Opus::File>(stream, tags);
        break;
    case ETagMark::Speex:
        ReadOggFile<TagLib::Ogg::Speex::File>(stream, tags);
        break;
    case ETagMark::OggFlac:
        ReadOggFile<TagLib::Ogg::FLAC::File>(stream, tags);
        break;
    case ETagMark::Asf:
        ReadAsfTags(source, begin, tags);
        break;
    case ETagMark::Mp4:
        ReadMp4(stream, tags);
        if (tags.m_sTitle.empty()) {
            ReadContainerTags(source, tags); // QuickTime's own texts
        }
        break;
    case ETagMark::Wav:
    case ETagMark::LongWav:
    case ETagMark::Aiff:
        ReadChunkTags(source, tags);
        break;
    case ETagMark::OtherContainer:
        ReadContainerTags(source, tags);
        break;
    case ETagMark::WavPack:
    case ETagMark::MonkeysAudio:
    case ETagMark::Unknown:
        ReadApe(source, ReadOldTag(source, tags), tags);
        break;
    }
}

COtherTags ReadTags(CSourceFile& source) {
    COtherTags tags;
    try {
        std::int64_t const ahead = LeadingTagBytes(ReadPiece(source, 0, kTagMarkBytes));
        bool const isThere = ahead > 0 && ahead <= source.GetSize();
        if (isThere && ahead <= kMostId3Bytes) {
            tags.m_vId3.push_back(ReadPiece(source, 0, ahead));
        }
        ReadByContent(source, isThere ? ahead : 0, tags);
    } catch (std::bad_alloc const&) {
        tags = {};
    }
    return tags;
}

} // namespace

COtherTags ReadOtherTags(std::string const& path) {
    CSourceFile source;
    return source.Open(path) == EDecodeProblem::None ? ReadTags(source) : COtherTags();
}

COtherTags ReadOtherTags(int file) {
    CSourceFile source;
    return source.Adopt(file) == EDecodeProblem::None ? ReadTags(source) : COtherTags();
}
