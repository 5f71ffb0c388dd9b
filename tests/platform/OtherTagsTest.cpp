// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/OtherTags.h"

#include "support/Process.h"
#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <chrono>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>

// Tags beside ID3v2, written by hand here; tests/tags/kinds_matrix.py has those of other programs.

namespace {

using namespace std::string_literals;

std::string Little(std::size_t value) {
    std::string text;
    for (unsigned i = 0; i < 4; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
    return text;
}

std::string Big(std::size_t value) {
    std::string const text = Little(value);
    return {text.rbegin(), text.rend()};
}

/// A chunk of a RIFF file, padded to an even length.
std::string Chunk(std::string const& id, std::string const& body) {
    return id + Little(body.size()) + body + std::string(body.size() % 2, '\0');
}

class OtherTagsTest : public testing::Test {
protected:
    COtherTags Read(std::string const& bytes) {
        WriteText(m_folder / "x", bytes);
        return ReadOtherTags(m_folder / "x");
    }

    CTempFolder m_folder;
};

TEST_F(OtherTagsTest, TextsOfRiffAreUtf8OrLatin1) {
    std::string const info =
        Chunk("LIST", "INFO" + Chunk("INAM", "\xE9\0"s) + Chunk("IART", "\xC3\xA9\0"s) +
                          Chunk("IPRD", "odd") + Chunk("IBPM", "128.5"));
    std::string const tag = "ID3\3\0\0\0\0\0\0"s;
    COtherTags const tags = Read("RIFF" + Little(0) + "WAVE" + Chunk("fmt ", std::string(16, 1)) +
                                 info + Chunk("id3 ", tag));
    EXPECT_EQ(tags.m_sTitle, "\xC3\xA9");
    EXPECT_EQ(tags.m_sArtist, "\xC3\xA9");
    EXPECT_EQ(tags.m_sAlbum, "odd");
    EXPECT_THAT(tags.m_vTempos, testing::ElementsAre("128.5"));
    EXPECT_THAT(tags.m_vId3,
                testing::ElementsAre(std::vector<std::uint8_t>(tag.begin(), tag.end())));
}

TEST_F(OtherTagsTest, TextsOfAiffAreTaken) {
    COtherTags const tags = Read("FORM" + Big(0) + "AIFF" + "NAME" + Big(3) + "abc\0"s + "AUTH" +
                                 Big(2) + "de" + "ID3 " + Big(3) + "ID3");
    EXPECT_EQ(tags.m_sTitle, "abc");
    EXPECT_EQ(tags.m_sArtist, "de");
    EXPECT_EQ(tags.m_vId3.size(), 1U);
}

TEST_F(OtherTagsTest, ChunksThatLieAboutTheirLengthEndTheSearch) {
    for (std::string const& size : {Little(0xFFFFFFFF), Little(0x7FFFFFFF), Little(1000)}) {
        COtherTags const tags =
            Read("RIFF" + Little(0) + "WAVE" + "LIST" + size + "INFOINAM" + size + "ab");
        EXPECT_EQ(tags.m_sTitle, "ab");
    }
}

TEST_F(OtherTagsTest, BoxesWithinBoxesWithoutEndAreGivenUp) {
    constexpr std::size_t kDepth = 200'000;
    std::string bytes = Big(16) + "ftypM4A " + Big(0);
    for (std::size_t i = kDepth; i > 0; --i) {
        bytes += Big(8 * i) + "moov";
    }
    EXPECT_EQ(Read(bytes).m_sTitle, "");
}

/// A text of an ASF file: UTF-16, the low byte first, with a zero behind it.
std::string Wide(std::string const& text) {
    std::string wide;
    for (char const letter : text + '\0') {
        wide += {letter, '\0'};
    }
    return wide;
}

std::string Short(std::size_t value) {
    return Little(value).substr(0, 2);
}

/// An object of an ASF file: GUID, size of eight bytes, body.
std::string AsfObject(std::string const& guid, std::string const& body) {
    return guid + Little(body.size() + 24) + Little(0) + body;
}

std::string AsfAttribute(std::string const& name, std::size_t type, std::string const& value) {
    return Short(Wide(name).size()) + Wide(name) + Short(type) + Short(value.size()) + value;
}

/// A header of objects.
std::string AsfFile(std::string const& objects) {
    return "\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C"s +
           Little(objects.size() + 30) + Little(0) + Little(2) + "\1\2" + objects;
}

constexpr char kAttributes[] = "\x40\xA4\xD0\xD2\x07\xE3\xD2\x11\x97\xF0\x00\xA0\xC9\x5E\xA8\x50";

TEST_F(OtherTagsTest, AttributesOfWindowsMediaAreTaken) {
    std::string const guid = "\x33\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C"s;
    std::string const description = Short(Wide("Song").size()) + Short(Wide("Band").size()) +
                                    Short(0) + Short(0) + Short(0) + Wide("Song") + Wide("Band");
    std::string const attributes = Short(3) + AsfAttribute("WM/AlbumTitle", 0, Wide("Record")) +
                                   AsfAttribute("WM/BeatsPerMinute", 3, Little(128)) +
                                   AsfAttribute("BPM", 0, Wide("128.5"));
    COtherTags const tags =
        Read(AsfFile(AsfObject(guid, description) + AsfObject({kAttributes, 16}, attributes)));
    EXPECT_EQ(tags.m_sTitle, "Song");
    EXPECT_EQ(tags.m_sArtist, "Band");
    EXPECT_EQ(tags.m_sAlbum, "Record");
    EXPECT_THAT(tags.m_vTempos, testing::ElementsAre("128", "128.5"));
}

TEST_F(OtherTagsTest, CountsThatLieCostNoTime) {
    // 3000 objects that promise 65,535 attributes each and have none.
    std::string objects;
    for (int i = 0; i < 3000; ++i) {
        objects += AsfObject({kAttributes, 16}, Short(0xFFFF));
    }
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Read(AsfFile(objects)).m_sTitle, "");
    // A machine that is busy with other things too: believing them would take half a minute.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(OtherTagsTest, AnOldTrailersTextsAreKeptApart) {
    TagBytes const trailer = Id3v1Trailer("Title", "Artist", "Album", "1999", 255);
    std::string const bytes = "audio" + std::string(trailer.begin(), trailer.end());
    COtherTags const tags = Read(bytes);
    EXPECT_EQ(tags.m_sOldTitle, "Title");
    EXPECT_EQ(tags.m_sOldArtist, "Artist");
    EXPECT_EQ(tags.m_sOldAlbum, "Album");
    EXPECT_EQ(tags.m_sTitle, "");
    EXPECT_TRUE(tags.m_vTempos.empty());
}

TEST_F(OtherTagsTest, ATagLongerThanItsFileIsLeftOut) {
    TagBytes const whole = Joined({TagHeader(3, 4), Zeros(4)});
    EXPECT_EQ(Read({whole.begin(), whole.end()}).m_vId3.size(), 1U);
    EXPECT_TRUE(Read({whole.begin(), whole.end() - 1}).m_vId3.empty());
}

TEST_F(OtherTagsTest, NothingButAFileIsRead) {
    ASSERT_EQ(mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    for (std::string const& path : {m_folder / "pipe", m_folder.Path(), m_folder / "none"}) {
        COtherTags const tags = ReadOtherTags(path);
        EXPECT_EQ(tags.m_sTitle, "");
        EXPECT_TRUE(tags.m_vId3.empty());
    }
}

} // namespace
