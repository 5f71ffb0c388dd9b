// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Reader.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"
#include "support/Unprivileged.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

TagBytes const kShortAudio = FakeAudio(10'000);

TagBytes VeltoText(TagBytes const& text) {
    return Joined({{static_cast<std::uint8_t>(text.size() / 256),
                    static_cast<std::uint8_t>(text.size() % 256)},
                   text});
}

/// A file's last 7,936 bytes: a block of texts at their beginning, the mark 48 before their end.
TagBytes VeltoTrailer(TagBytes const& block, std::string_view mark = "Velto") {
    TagBytes out = block;
    out.resize(7936 - 48);
    TagBytes const tail = Ascii(mark);
    out.insert(out.end(), tail.begin(), tail.end());
    out.resize(7936);
    return out;
}

} // namespace

class ID3ReaderTest : public testing::Test {
protected:
    CString Path() const { return CString::FromPath(m_sFile); }

    /// Asks a file with these bytes; `m_sValue` begins as "before".
    std::int32_t Import(TagBytes const& bytes, char const* id) {
        return Ask(bytes,
                   [&](CFile& file) { return CID3Reader::ImportMetaData(&file, id, m_sValue); });
    }

    std::int32_t ImportV1(TagBytes const& bytes, char const* id) {
        return Ask(bytes, [&](CFile& file) {
            return CID3Reader::ImportID3v1MetaData(&file, id, m_sValue);
        });
    }

    std::int32_t ImportVelto(TagBytes const& bytes) {
        return Ask(bytes, [](CFile& file) { return CID3Reader::ImportVeltoMetaData(&file); });
    }

    /// Writes a text into a file with these bytes.
    EWriteProblem Set(TagBytes const& bytes, wchar_t const* text = L"128") {
        WriteBytes(m_sFile, bytes);
        EWriteProblem problem = EWriteProblem::WriteFailed;
        EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", text, &problem), 1);
        return problem;
    }

    template <typename Question>
    std::int32_t Ask(TagBytes const& bytes, Question question) {
        WriteBytes(m_sFile, bytes);
        m_sValue = L"before";
        CFile file(Path(), CFile::modeRead);
        return question(file);
    }

    CTempFolder m_folder;
    std::string m_sFile = m_folder / "song.mp3";
    CString m_sValue;
};

TEST_F(ID3ReaderTest, TagAnswersBeforeTheTrailer) {
    TagBytes const bytes = Joined({TagOf(3, Joined({kTitle, kTempo})), kShortAudio,
                                   Id3v1Trailer("Other", "", "", "1999", 255)});
    EXPECT_EQ(Import(bytes, "TBPM"), 1);
    EXPECT_TRUE(m_sValue == "128");
    EXPECT_EQ(Import(bytes, "TIT2"), 1);
    EXPECT_TRUE(m_sValue == "Title");
}

TEST_F(ID3ReaderTest, FrameThatTheTagLacksIsAskedOfTheTrailer) {
    TagBytes const bytes =
        Joined({TagOf(3, kTitle), kShortAudio, Id3v1Trailer("Other", "", "", "1999", 255)});
    EXPECT_EQ(Import(bytes, "TPE1"), 1);
    EXPECT_TRUE(m_sValue == "1999");
}

TEST_F(ID3ReaderTest, FileWithoutAnythingAnswersNo) {
    EXPECT_EQ(Import(kShortAudio, "TIT2"), 0);
    EXPECT_TRUE(m_sValue == "before");
    EXPECT_EQ(Import({}, "TIT2"), 0);
}

TEST_F(ID3ReaderTest, TagTextComesThroughTheTagAlone) {
    WriteBytes(m_sFile, Joined({TagOf(3, kTitle), kShortAudio}));
    CFile file(Path(), CFile::modeRead);
    EXPECT_EQ(CID3Reader::ImportID3v2MetaData(&file, "TIT2", m_sValue), 1);
    EXPECT_TRUE(m_sValue == "Title");
    EXPECT_EQ(CID3Reader::ImportID3v2MetaData(&file, "TPE1", m_sValue), 0);
}

TEST_F(ID3ReaderTest, PinsKnownGenreEmptiesTheAnswer) {
    TagBytes const bytes = Joined({kShortAudio, Id3v1Trailer("Song", "", "", "1999", 17)});
    EXPECT_EQ(Import(bytes, "TIT2"), 1);
    EXPECT_TRUE(m_sValue.IsEmpty());
    EXPECT_EQ(Import(Joined({kShortAudio, Id3v1Trailer("Song", "", "", "1999", 125)}), "TPE1"), 1);
    EXPECT_TRUE(m_sValue.IsEmpty());
}

TEST_F(ID3ReaderTest, PinsUnknownGenreLeavesTheYear) {
    for (std::uint8_t const genre : {std::uint8_t{126}, std::uint8_t{255}}) {
        for (char const* id : {"TIT2", "TPE1", "TBPM"}) {
            EXPECT_EQ(
                Import(Joined({kShortAudio, Id3v1Trailer("Song", "A", "B", "1999", genre)}), id),
                1);
            EXPECT_TRUE(m_sValue == "1999");
        }
    }
}

TEST_F(ID3ReaderTest, AnyOfTheThreeTextsMakesTheTrailerCount) {
    EXPECT_EQ(ImportV1(Joined({kShortAudio, Id3v1Trailer("x", "", "", "", 255)}), "TBPM"), 1);
    EXPECT_EQ(ImportV1(Joined({kShortAudio, Id3v1Trailer("", "x", "", "", 255)}), "TBPM"), 1);
    EXPECT_EQ(ImportV1(Joined({kShortAudio, Id3v1Trailer("", "", "x", "", 255)}), "TBPM"), 1);
}

TEST_F(ID3ReaderTest, PinsAnswerChangesThoughTheTrailerDoesNotCount) {
    EXPECT_EQ(ImportV1(Joined({kShortAudio, Id3v1Trailer("", "", "", "1999", 255)}), "TIT2"), 0);
    EXPECT_TRUE(m_sValue == "1999");
}

TEST_F(ID3ReaderTest, TextThatIsNotUtf8IsEmpty) {
    EXPECT_EQ(ImportV1(Joined({kShortAudio, Id3v1Trailer("caf\xE9", "", "", "1999", 255)}), "TIT2"),
              0);
    EXPECT_EQ(
        ImportV1(Joined({kShortAudio, Id3v1Trailer("caf\xC3\xA9", "", "", "1999", 255)}), "TIT2"),
        1);
}

TEST_F(ID3ReaderTest, BareTrailerIsNotRead) {
    TagBytes const trailer = Id3v1Trailer("Song", "", "", "1999", 255);
    EXPECT_EQ(ImportV1(trailer, "TIT2"), 0);
    EXPECT_TRUE(m_sValue == "before");
    EXPECT_EQ(ImportV1(Joined({{0x55}, trailer}), "TIT2"), 1);
    EXPECT_EQ(ImportV1(Joined({{0x55}, trailer, {0x55}}), "TIT2"), 0);
}

TEST_F(ID3ReaderTest, PrivateTrailerCountsWithAText) {
    EXPECT_EQ(ImportVelto(VeltoTrailer(Joined({VeltoText({}), VeltoText({}), VeltoText({})}))), 0);
    EXPECT_EQ(ImportVelto(VeltoTrailer(Joined({VeltoText({'a'}), VeltoText({}), VeltoText({})}))),
              1);
    EXPECT_EQ(ImportVelto(VeltoTrailer(Joined({VeltoText({}), VeltoText({}), VeltoText({'a'})}))),
              1);
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText({'a'}), "Velta")), 0);
    // Bytes that are no UTF-8, or begin with 0, are no text.
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText({0xE9}))), 0);
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText({0x00, 'a'}))), 0);
}

TEST_F(ID3ReaderTest, PrivateTrailerIsTheLastToBeAsked) {
    TagBytes const bytes = Joined({kShortAudio, VeltoTrailer(VeltoText({'a'}))});
    EXPECT_EQ(Import(bytes, "TIT2"), 1);
    EXPECT_TRUE(m_sValue == "before");
}

TEST_F(ID3ReaderTest, PrivateTextsHaveAtMost256Bytes) {
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText(TagBytes(256, 'a')))), 1);
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText(TagBytes(257, 'a')))), 0);
    EXPECT_EQ(ImportVelto(VeltoTrailer(VeltoText(TagBytes(300, 'a')))), 0);
    // A bad length after a good text undoes it.
    EXPECT_EQ(ImportVelto(VeltoTrailer(Joined({VeltoText({'a'}), VeltoText(TagBytes(300, 'b'))}))),
              0);
}

TEST_F(ID3ReaderTest, FileTooShortForThePrivateBlockAnswersNo) {
    TagBytes bytes = VeltoTrailer(VeltoText({'a'}));
    EXPECT_EQ(ImportVelto(bytes), 1);
    bytes.erase(bytes.begin());
    EXPECT_EQ(ImportVelto(bytes), 0);
    EXPECT_EQ(ImportVelto(TagBytes(bytes.end() - 48, bytes.end())), 0);
    EXPECT_EQ(ImportVelto(Ascii("Velto")), 0);
    EXPECT_EQ(ImportVelto({}), 0);
}

TEST_F(ID3ReaderTest, PinsFilesOverTwoGigabytesPassTheLengthTest) {
    auto const withTail = [this](TagBytes const& tail) {
        WriteBytes(m_sFile, {});
        std::filesystem::resize_file(m_sFile, 3'000'000'000 - tail.size());
        std::ofstream file(m_sFile, std::ios::binary | std::ios::app);
        file.write(reinterpret_cast<char const*>(tail.data()),
                   static_cast<std::streamsize>(tail.size()));
    };
    withTail(Id3v1Trailer("Song", "", "", "1999", 255));
    CFile file(Path(), CFile::modeRead);
    EXPECT_EQ(CID3Reader::ImportID3v1MetaData(&file, "TIT2", m_sValue), 1);
    EXPECT_TRUE(m_sValue == "1999");
    withTail(VeltoTrailer(VeltoText({'a'})));
    CFile other(Path(), CFile::modeRead);
    EXPECT_EQ(CID3Reader::ImportVeltoMetaData(&other), 1);
}

TEST_F(ID3ReaderTest, ClosedFileThrowsThrough) {
    CFile closed;
    try {
        (void)CID3Reader::ImportMetaData(&closed, "TIT2", m_sValue);
        FAIL() << "nothing was thrown";
    } catch (CFileException* exception) {
        std::unique_ptr<CFileException> const owned(exception);
        EXPECT_EQ(owned->m_nCause, 2);
    }
}

TEST_F(ID3ReaderTest, TrailingSpacesAndZerosAreKilled) {
    auto const killed = [](std::string text) {
        CID3Reader::KillTrailingSpaces(text.data(), static_cast<std::uint32_t>(text.size()));
        return text;
    };
    EXPECT_EQ(killed("ab  "), std::string("ab\0\0", 4));
    EXPECT_EQ(killed(std::string("a \0 \0", 5)), std::string("a\0\0\0\0", 5));
    EXPECT_EQ(killed(" a"), " a");
    EXPECT_EQ(killed("  "), std::string(2, '\0'));
    EXPECT_EQ(killed(""), "");
}

TEST_F(ID3ReaderTest, SetWritesTheTempo) {
    EXPECT_EQ(Set(Joined({TagOf(3, kTitle), kShortAudio})), EWriteProblem::None);
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(4096)})), kShortAudio}));
    EXPECT_EQ(Set(kShortAudio), EWriteProblem::None);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Joined({kTempo, Zeros(4096)})), kShortAudio}));
}

TEST_F(ID3ReaderTest, SetNeedsNoPlaceForItsReason) {
    WriteBytes(m_sFile, kShortAudio);
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128"), 1);
    EXPECT_NE(ReadBytes(m_sFile), kShortAudio);
}

TEST_F(ID3ReaderTest, SetOfTheSameTextTouchesNothing) {
    TagBytes const bytes = Joined({TagOf(4, Frame24("TBPM", Latin1Text("128"))), kShortAudio});
    WriteBytes(m_sFile, bytes);
    struct stat before = {};
    ASSERT_EQ(::stat(m_sFile.c_str(), &before), 0);
    EWriteProblem problem = EWriteProblem::WriteFailed;
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128", &problem), 1);
    EXPECT_EQ(problem, EWriteProblem::None);
    struct stat after = {};
    ASSERT_EQ(::stat(m_sFile.c_str(), &after), 0);
    EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
}

TEST_F(ID3ReaderTest, SetGoesByTheExtension) {
    for (char const* name : {"song.wav", "song.mp3x", "song", "song.mp3/x", ".mp3.aiff"}) {
        m_sFile = m_folder / name;
        std::filesystem::create_directories(std::filesystem::path(m_sFile).parent_path());
        EXPECT_EQ(Set(kShortAudio), EWriteProblem::OtherExtension) << name;
        EXPECT_EQ(ReadBytes(m_sFile), kShortAudio);
    }
    for (char const* name : {"upper.MP3", "mixed.mP3", ".mp3"}) {
        m_sFile = m_folder / name;
        EXPECT_EQ(Set(kShortAudio), EWriteProblem::None) << name;
        EXPECT_NE(ReadBytes(m_sFile), kShortAudio) << name;
    }
}

TEST_F(ID3ReaderTest, SetLeavesAloneWhatItCannotOpen) {
    EWriteProblem problem = EWriteProblem::None;
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128", &problem), 1);
    EXPECT_EQ(problem, EWriteProblem::NotWritable);
    EXPECT_FALSE(std::filesystem::exists(m_sFile));
    ASSERT_EQ(::mkfifo(m_sFile.c_str(), 0600), 0);
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128", &problem), 1);
    EXPECT_EQ(problem, EWriteProblem::NotWritable);
}

TEST_F(ID3ReaderTest, SetLeavesReadOnlyFilesAlone) {
    WriteBytes(m_sFile, kShortAudio);
    ::chmod(m_sFile.c_str(), 0400);
    CUnprivileged const user({m_folder.Path(), m_sFile});
    EWriteProblem problem = EWriteProblem::None;
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128", &problem), 1);
    EXPECT_EQ(problem, EWriteProblem::NotWritable);
    EXPECT_EQ(ReadBytes(m_sFile), kShortAudio);
}

TEST_F(ID3ReaderTest, SetRefusesFilesOverFourGigabytes) {
    WriteBytes(m_sFile, kShortAudio);
    std::filesystem::resize_file(m_sFile, 0x100000000);
    EWriteProblem problem = EWriteProblem::None;
    EXPECT_EQ(CID3Reader::SetTagString(Path(), "TBPM", L"128", &problem), 1);
    EXPECT_EQ(problem, EWriteProblem::FileTooLarge);
}

TEST_F(ID3ReaderTest, SetRefusesATagPastTheEndOfTheFile) {
    TagBytes const bytes = Joined({TagHeader(3, 20'000), kTitle, kShortAudio});
    EXPECT_EQ(Set(bytes), EWriteProblem::TagUnreadable);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
}

TEST_F(ID3ReaderTest, SetNeverThrowsUnreachedBytesAway) {
    TagBytes const extended = {0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    TagBytes const frame = Frame23("TPE1", Latin1Text("Artist"));
    for (TagBytes const& tag : {
             TagOf(3, Joined({kTitle, Frame23("TCON", {}), frame})), // a frame of size 0
             TagOf(3, Joined({extended, kTitle}), 0x40),             // a misplaced walk
             TagOf(3, Joined({kTitle, Ascii("junk and more of it")})),
             TagOf(3, Joined({kTitle, Zeros(40), {0x01}})),
             TagOf(3, Joined({kTitle, {0xFF, 0xFB, 0x90, 0x64}, TagBytes(300, 0x55)})),
         }) {
        TagBytes const bytes = Joined({tag, kShortAudio});
        EXPECT_EQ(Set(bytes), EWriteProblem::UnknownData);
        EXPECT_EQ(ReadBytes(m_sFile), bytes);
    }
}

TEST_F(ID3ReaderTest, SetLeavesTagsAloneThatAreDecodedTwice) {
    // Version 2.4 encodes each frame: FF 00 00 stands for FF 00. The whole tag's pass and the
    // frame's own make FF of it, and a zero of the picture would be gone.
    TagBytes const picture =
        Joined({{0x00}, Ascii("image/jpeg"), {0x00, 0x03, 0x00, 0xFF, 0x00, 0x00, 0x55}});
    TagBytes const frame = Frame24("APIC", picture, 0x00, 0x02);
    TagBytes const bytes = Joined({TagOf(4, Joined({frame, Zeros(100)}), 0x80), kShortAudio});
    EXPECT_EQ(Set(bytes), EWriteProblem::UnknownData);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
    // The frame's pass alone restores what was there, and two passes without an FF do no harm.
    EXPECT_EQ(Set(Joined({TagOf(4, Joined({frame, Zeros(100)})), kShortAudio})),
              EWriteProblem::None);
    TagBytes const body = {0x00, 'U', 'T', 'F'};
    TagBytes const harmless = Frame24("TIT2", body, 0x00, 0x02);
    EXPECT_EQ(Set(Joined({TagOf(4, Joined({harmless, Zeros(100)}), 0x80), kShortAudio})),
              EWriteProblem::None);
}

TEST_F(ID3ReaderTest, SetLeavesAnMp4FileAloneWhateverItsName) {
    // Its sample tables count from the beginning of the file, which a tag would move.
    TagBytes const movie = Joined({{0, 0, 0, 16}, Ascii("ftypM4A "), Zeros(4), kShortAudio});
    EXPECT_EQ(Set(movie), EWriteProblem::OtherFormat);
    EXPECT_EQ(ReadBytes(m_sFile), movie);
    TagBytes const tagged = Joined({TagOf(3, Zeros(100)), movie});
    EXPECT_EQ(Set(tagged), EWriteProblem::OtherFormat);
    EXPECT_EQ(ReadBytes(m_sFile), tagged);
    EXPECT_EQ(Set(Joined({Ascii("RIFF"), Zeros(4), Ascii("WAVE")})), EWriteProblem::None);
}

TEST_F(ID3ReaderTest, SetNeverWritesATextThatWouldBeDropped) {
    // The flag asks to discard the frame when the file is altered: the old tempo would go and the
    // new one not come.
    TagBytes const frame = Frame23("TBPM", Latin1Text("120"), 0x40);
    TagBytes const bytes = Joined({TagOf(3, Joined({kTitle, frame, Zeros(100)})), kShortAudio});
    EXPECT_EQ(Set(bytes), EWriteProblem::UnknownData);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
}

TEST_F(ID3ReaderTest, SetOfTheTextInPlaceNeedsNoReason) {
    // Nothing is written, so nothing can be thrown away.
    EXPECT_EQ(Set(TagOf(3, Joined({kTempo, Zeros(40), {0x01}}))), EWriteProblem::None);
}

using ID3ReaderDeathTest = ID3ReaderTest;

TEST_F(ID3ReaderDeathTest, SetStillAssertsOnUnknownVersion22Ids) {
    WriteBytes(m_sFile, TagOf(2, Joined({Frame22("PCS", Latin1Text("A")), Zeros(10)})));
    EXPECT_DEATH((void)CID3Reader::SetTagString(Path(), "TBPM", L"1"),
                 "IDTag/ID3Tag:[0-9]+.*FALSE");
}
