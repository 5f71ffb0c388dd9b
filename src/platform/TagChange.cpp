// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: know the kind by its first bytes; let TagLib open it; put the texts where they aren't
// yet; save unless nothing changed or it is a trial.

#include "platform/TagChange.h"

#include "platform/FileKind.h"
#include "platform/TagFile.h"
#include "platform/TagLibVersions.h"
#include "platform/TagMarks.h"
#include "platform/TagReaders.h"
#include "platform/TagStream.h"

#include <charconv>
#include <cmath>
#include <memory>
#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/textidentificationframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>
#include <taglib/xiphcomment.h>

namespace {

using TagLib::String;
using TagLib::StringList;

constexpr char kTempoComment[] = "BPM";
constexpr char kKeyComment[] = "INITIALKEY";
constexpr char kTempoFrame[] = "TBPM";                   // Standard: ID3v2.3.0, section 4.2.1.
constexpr char kKeyFrame[] = "TKEY";                     // Standard: likewise.
constexpr char kFreePrefix[] = "----:com.apple.iTunes:"; // Standard: where everybody looks for it.

/// Calls `put` with the name and the text of each wish.
template <typename Put>
bool PutEach(CTagWish const& wish, char const* tempoName, char const* keyName, Put put) {
    bool isChanged = !wish.m_sTempo.empty() && put(tempoName, wish.m_sTempo);
    return (!wish.m_sKey.empty() && put(keyName, wish.m_sKey)) || isChanged;
}

bool Put(TagLib::Ogg::XiphComment& comment, CTagWish const& wish) {
    if (wish.m_bNoTempo) {
        bool const isThere = comment.contains(kTempoComment);
        comment.removeFields(kTempoComment);
        return isThere;
    }
    return PutEach(wish, kTempoComment, kKeyComment,
                   [&](char const* name, std::string const& text) {
                       TagLib::Ogg::FieldListMap const& fields = comment.fieldListMap();
                       if (fields.contains(name) && fields[name] == StringList(String(text))) {
                           return false;
                       }
                       comment.addField(name, String(text), true);
                       return true;
                   });
}

bool Put(TagLib::APE::Tag& tag, CTagWish const& wish) {
    if (wish.m_bNoTempo) {
        bool const isThere = tag.itemListMap().contains(kTempoComment);
        tag.removeItem(kTempoComment);
        return isThere;
    }
    return PutEach(wish, kTempoComment, kKeyComment,
                   [&](char const* name, std::string const& text) {
                       TagLib::APE::ItemListMap const& items = tag.itemListMap();
                       if (items.contains(name) && items[name].toString() == String(text)) {
                           return false;
                       }
                       tag.addValue(name, String(text), true);
                       return true;
                   });
}

bool Put(TagLib::ID3v2::Tag& tag, CTagWish const& wish) {
    if (wish.m_bNoTempo) {
        bool const isThere = !tag.frameList(kTempoFrame).isEmpty();
        tag.removeFrames(kTempoFrame);
        return isThere;
    }
    return PutEach(wish, kTempoFrame, kKeyFrame, [&](char const* id, std::string const& text) {
        TagLib::ID3v2::FrameList const& frames = tag.frameList(id);
        if (frames.isEmpty()) {
            auto frame =
                std::make_unique<TagLib::ID3v2::TextIdentificationFrame>(id, String::Latin1);
            frame->setText(String(text));
            tag.addFrame(frame.release()); // the tag's from here on
            return true;
        }
        if (frames.front()->toString() == String(text)) {
            return false;
        }
        frames.front()->setText(String(text));
        return true;
    });
}

/// The name of the freeform item that ends in `name`, in whatever letters; a usual one when there
/// is none.
String FreeItem(TagLib::MP4::Tag const& tag, char const* name) {
    for (auto const& [key, item] : tag.itemMap()) {
        if (FreeName(key.to8Bit(true)) == name) {
            return key;
        }
    }
    return String(kFreePrefix) + name;
}

bool PutFree(TagLib::MP4::Tag& tag, String const& name, std::string const& text) {
    StringList const wanted{String(text)};
    if (tag.contains(name) && tag.item(name).toStringList() == wanted) {
        return false;
    }
    tag.setItem(name, TagLib::MP4::Item(wanted));
    return true;
}

bool TakeTempoOut(TagLib::MP4::Tag& tag) {
    String const freeName = FreeItem(tag, kTempoComment);
    bool const isThere = tag.contains(kTempoItem) || tag.contains(freeName);
    tag.removeItem(kTempoItem);
    tag.removeItem(freeName);
    return isThere;
}

bool Put(TagLib::MP4::Tag& tag, CTagWish const& wish) {
    if (wish.m_bNoTempo) {
        return TakeTempoOut(tag);
    }
    return PutEach(wish, kTempoComment, kKeyComment,
                   [&](char const* name, std::string const& text) {
                       String const freeName = FreeItem(tag, name);
                       if (name == kKeyComment) {
                           return PutFree(tag, freeName, text);
                       }
                       double value = 0.0;
                       (void)std::from_chars(text.data(), text.data() + text.size(), value);
                       if (!(value > 0.0)) {
                           return PutFree(tag, freeName, text); // words of somebody's
                       }
                       int const whole = static_cast<int>(std::lround(std::min(value, 65'535.0)));
                       // A whole number needs no second item, but one that is there must not say
                       // otherwise.
                       bool const isFree = value != whole || tag.contains(freeName);
                       bool const isFreeChanged = isFree && PutFree(tag, freeName, text);
                       if (tag.contains(kTempoItem) && tag.item(kTempoItem).toInt() == whole) {
                           return isFreeChanged;
                       }
                       tag.setItem(kTempoItem, TagLib::MP4::Item(whole));
                       return true;
                   });
}

ETagChange Outcome(bool isChanged, bool isSaved) {
    return !isChanged ? ETagChange::Same : isSaved ? ETagChange::Changed : ETagChange::Refused;
}

/// Puts the wish into `tag` of `file`, and has `save` save it.
template <typename File, typename Tag, typename Save>
ETagChange Change(File const& file, Tag* tag, CTagWish const& wish, ETagDepth depth, Save save) {
    if (!file.isValid() || tag == nullptr) {
        return ETagChange::Refused;
    }
    bool const isChanged = Put(*tag, wish);
    return Outcome(isChanged, depth == ETagDepth::Trial || !isChanged || save());
}

template <typename File>
ETagChange ChangeOgg(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    File file(&stream, false);
    return Change(file, file.isValid() ? file.tag() : nullptr, wish, depth,
                  [&file] { return file.save(); });
}

template <typename File>
ETagChange ChangeApe(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    File file(&stream, false);
    return Change(file, file.isValid() ? file.APETag(true) : nullptr, wish, depth,
                  [&file] { return file.save(); });
}

/// The version in which a chunk's tag is written: its own, and 2.3 for a new one.
TagLib::ID3v2::Version VersionOf(TagLib::ID3v2::Tag const& tag, bool isNew) {
    return !isNew && tag.header()->majorVersion() == 4 ? TagLib::ID3v2::v4 : TagLib::ID3v2::v3;
}

ETagChange ChangeWav(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    using TagLib::RIFF::WAV::File;
    File file(&stream, false);
    bool const isNew = !file.hasID3v2Tag();
    return Change(file, file.ID3v2Tag(), wish, depth, [&] {
        return file.save(File::ID3v2, TagLib::File::StripNone, VersionOf(*file.ID3v2Tag(), isNew));
    });
}

ETagChange ChangeAiff(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    TagLib::RIFF::AIFF::File file(&stream, false);
    bool const isNew = !file.hasID3v2Tag();
    return Change(file, file.tag(), wish, depth,
                  [&] { return file.save(VersionOf(*file.tag(), isNew)); });
}

ETagChange ChangeFlac(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    TagLib::FLAC::File file = FlacFileIn(stream);
    return Change(file, file.isValid() ? file.xiphComment(true) : nullptr, wish, depth,
                  [&file] { return file.save(); });
}

ETagChange ChangeMp4(TagLib::IOStream& stream, CTagWish const& wish, ETagDepth depth) {
    TagLib::MP4::File file(&stream, false);
    return Change(file, file.isValid() ? file.tag() : nullptr, wish, depth,
                  [&file] { return file.save(); });
}

ETagChange ChangeKind(ETagMark mark, TagLib::IOStream& stream, CTagWish const& wish,
                      ETagDepth depth) {
    switch (mark) {
    case ETagMark::Flac:
        return ChangeFlac(stream, wish, depth);
    case ETagMark::Vorbis:
        return ChangeOgg<TagLib::Ogg::Vorbis::File>(stream, wish, depth);
    case ETagMark::Opus:
        return ChangeOgg<TagLib::Ogg::Opus::File>(stream, wish, depth);
    case ETagMark::Speex:
        return ChangeOgg<TagLib::Ogg::Speex::File>(stream, wish, depth);
    case ETagMark::OggFlac:
        return ChangeOgg<TagLib::Ogg::FLAC::File>(stream, wish, depth);
    case ETagMark::Mp4:
        return ChangeMp4(stream, wish, depth);
    case ETagMark::Wav:
        return ChangeWav(stream, wish, depth);
    case ETagMark::Aiff:
        return ChangeAiff(stream, wish, depth);
    case ETagMark::WavPack:
        return ChangeApe<TagLib::WavPack::File>(stream, wish, depth);
    case ETagMark::MonkeysAudio:
        return ChangeApe<TagLib::APE::File>(stream, wish, depth);
    case ETagMark::LongWav:
    case ETagMark::Asf:
    case ETagMark::OtherContainer:
    case ETagMark::Unknown:
        break;
    }
    return ETagChange::Refused;
}

} // namespace

ETagChange ChangeTags(int file, CTagWish const& wish, ETagDepth depth, int& error) {
    CSourceFile source;
    if (source.Adopt(file) != EDecodeProblem::None) {
        return ETagChange::Refused;
    }
    // An ID3v2 tag in front, where these kinds have none, would be made anew with the rest.
    ETagMark const mark = TagMarkOf(ReadPiece(source, 0, kTagMarkBytes));
    if (depth == ETagDepth::Trial) {
        CTagStream stream(source, 0);
        return ChangeKind(mark, stream, wish, depth);
    }
    CTagFile stream(file);
    ETagChange const change = ChangeKind(mark, stream, wish, depth);
    error = stream.GetError();
    return error != 0 ? ETagChange::Failed : change;
}
