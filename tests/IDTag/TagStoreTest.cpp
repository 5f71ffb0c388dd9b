// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagStore.h"

#include "IDTag/ID3Reader.h"

#include "support/SystemCalls.h"
#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

class TagStoreTest : public testing::Test {
protected:
    EWriteProblem Store(std::string const& name, CTagStoreOptions const& options = {}) {
        m_report = CTagStoreReport();
        return StoreTagText(Path(name), "TBPM", L"128.00", options, &m_report);
    }

    void ExpectLeft(std::string const& name, TagBytes const& bytes, EWriteProblem problem,
                    CTagStoreOptions const& options = {}) {
        Write(name, bytes);
        EXPECT_EQ(Store(name, options), problem) << name;
        EXPECT_FALSE(m_report.m_bWritten);
        EXPECT_EQ(ReadBytes(m_folder / name), bytes) << name;
    }

    CString Path(std::string const& name) const { return CString::FromPath(m_folder / name); }
    void Write(std::string const& name, TagBytes const& bytes) {
        WriteBytes(m_folder / name, bytes);
    }

    std::string Text(std::string const& name, char const* id) const {
        CString text;
        return ReadTagText(Path(name), id, text) == kStatusOk ? text.ToUtf8() : "<none>";
    }

    /// Ids and status flags of the tag's frames.
    std::string Ids(std::string const& name) const {
        CID3Tag tag;
        EXPECT_EQ(tag.OpenFile(Path(name)), kStatusOk);
        std::string ids;
        CID3Frame* frame = nullptr;
        for (std::uint32_t i = 0; tag.GetFrames().EnumItems(i, &frame); ++i) {
            ID3V2_3_FRAMEHEADER header = {};
            std::uint8_t* data = nullptr;
            std::uint32_t size = 0;
            (void)frame->GetData(&header, &data, &size);
            ids += std::string(header.m_sId, 4) + (header.m_nStatusFlags != 0 ? "! " : " ");
        }
        return ids;
    }

    CTempFolder m_folder;
    CTagStoreReport m_report;
};

TEST_F(TagStoreTest, WritesTheTextAndTellsWhatWasThere) {
    Write("a.mp3", Joined({TagOf(4, Joined({Frame24("TIT2", Latin1Text("Title")),
                                            Frame24("TBPM", Latin1Text("97"))})),
                           kSound}));
    EXPECT_EQ(Store("a.mp3"), EWriteProblem::None);
    EXPECT_TRUE(m_report.m_bWritten);
    EXPECT_EQ(m_report.m_nVersionBefore, 4);
    EXPECT_EQ(m_report.m_sTextBefore.ToUtf8(), "97");
    EXPECT_EQ(m_report.m_after, IdentityAt(m_folder / "a.mp3"));
    EXPECT_EQ(Text("a.mp3", "TBPM"), "128.00");
    EXPECT_EQ(Text("a.mp3", "TIT2"), "Title");
    TagBytes const written = ReadBytes(m_folder / "a.mp3");
    EXPECT_EQ(Store("a.mp3"), EWriteProblem::None);
    EXPECT_FALSE(m_report.m_bWritten);
    EXPECT_EQ(ReadBytes(m_folder / "a.mp3"), written);
}

TEST_F(TagStoreTest, OnlyTheExpectedFileInItsStateIsWritten) {
    Write("a.mp3", Joined({TagOf(3, kTitle), kSound}));
    CTagStoreOptions options;
    options.m_expected = IdentityAt(m_folder / "a.mp3");
    // Another song under the name, with the same tag and length.
    Write("b.mp3", Joined({TagOf(3, kTitle), MpegAudio(4)}));
    std::filesystem::rename(m_folder / "b.mp3", m_folder / "a.mp3");
    TagBytes const other = ReadBytes(m_folder / "a.mp3");
    EXPECT_EQ(Store("a.mp3", options), EWriteProblem::Changed);
    EXPECT_EQ(ReadBytes(m_folder / "a.mp3"), other);
    options.m_expected = IdentityAt(m_folder / "a.mp3");
    EXPECT_EQ(Store("a.mp3", options), EWriteProblem::None);
}

TEST_F(TagStoreTest, ASongThatTakesTheNameMeanwhileIsToldAsThat) {
    TagBytes const song = Joined({TagOf(3, kTitle), kSound});
    // Where the sound of one begins, the other has text, and more than may lie before a sound.
    TagBytes const text = Frame23("TPE1", Latin1Text(std::string(9000, 'x')));
    TagBytes const other = Joined({TagOf(3, Joined({kTitle, text})), kSound});
    CTagStoreOptions options;
    options.m_bNeedsMpegChain = true;
    for (int place = 1;; ++place) {
        Write("a.mp3", song);
        Write("b.mp3", other);
        int opened = 0;
        EWriteProblem problem = EWriteProblem::None;
        {
            CSystemCalls calls;
            calls.m_open = [&](int) {
                if (++opened == place) {
                    std::filesystem::rename(m_folder / "b.mp3", m_folder / "a.mp3");
                }
                return 0;
            };
            problem = Store("a.mp3", options);
        }
        if (problem == EWriteProblem::None) {
            EXPECT_GT(place, 2); // the tag was read and the sound looked at before
            break;
        }
        EXPECT_EQ(problem, EWriteProblem::Changed) << place;
        EXPECT_EQ(ReadBytes(m_folder / "a.mp3"), other) << place;
    }
}

TEST_F(TagStoreTest, ATextThatSomebodySetMeanwhileStays) {
    CTagStoreOptions options;
    options.m_expectedText = CString();
    ExpectLeft("a.mp3", Joined({TagOf(3, Frame23("TBPM", Latin1Text("ca. 120"))), kSound}),
               EWriteProblem::TempoChanged, options);
    EXPECT_EQ(m_report.m_sTextBefore.ToUtf8(), "ca. 120");
    options.m_expectedText = CString("ca. 120");
    EXPECT_EQ(Store("a.mp3", options), EWriteProblem::None);
    EXPECT_EQ(Text("a.mp3", "TBPM"), "128.00");
}

TEST_F(TagStoreTest, OnlyNamesThatEndInMp3OnBothSidesOfALinkAreWritten) {
    ExpectLeft("a.wav", kSound, EWriteProblem::OtherExtension);
    Write("key.pem", kSound);
    std::filesystem::create_symlink("key.pem", m_folder / "b.mp3");
    EXPECT_EQ(Store("b.mp3"), EWriteProblem::LinkTarget);
    EXPECT_EQ(ReadBytes(m_folder / "key.pem"), kSound);
    std::filesystem::create_symlink("b.mp3", m_folder / "c.mp3");
    EXPECT_EQ(Store("c.mp3"), EWriteProblem::LinkTarget);
    std::filesystem::create_symlink("nothing.wav", m_folder / "d.mp3");
    EXPECT_EQ(Store("d.mp3"), EWriteProblem::NotWritable);
    Write("e.MP3", kSound);
    std::filesystem::create_symlink("e.MP3", m_folder / "f.mp3");
    EXPECT_EQ(Store("f.mp3"), EWriteProblem::None);
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "f.mp3"));
    EXPECT_EQ(Text("e.MP3", "TBPM"), "128.00");
}

TEST_F(TagStoreTest, MarkedFramesStayUnlessAskedOtherwise) {
    TagBytes const song =
        Joined({TagOf(3, Joined({Frame23("TLEN", Latin1Text("1000"), 0x40), kTitle,
                                 Frame23("TBPM", Latin1Text("1"), 0x40)})),
                kSound});
    Write("a.mp3", song);
    EXPECT_EQ(Store("a.mp3"), EWriteProblem::None);
    EXPECT_EQ(Ids("a.mp3"), "TLEN! TIT2 TBPM! ");
    EXPECT_EQ(Text("a.mp3", "TBPM"), "128.00");
    EXPECT_EQ(Text("a.mp3", "TLEN"), "1000");
    CTagStoreOptions options;
    options.m_bKeepMarked = false;
    ExpectLeft("b.mp3", song, EWriteProblem::UnknownData, options); // the text would go
    Write("c.mp3",
          Joined({TagOf(3, Joined({Frame23("TLEN", Latin1Text("1000"), 0x40), kTitle})), kSound}));
    EXPECT_EQ(Store("c.mp3", options), EWriteProblem::None);
    EXPECT_EQ(Ids("c.mp3"), "TIT2 TBPM ");
}

TEST_F(TagStoreTest, IdsOfPlayersInVersion22GetTheirLaterNames) {
    TagBytes const song = Joined(
        {TagOf(2, Joined({Frame22("TT2", Latin1Text("Title")), Frame22("PCS", {0, 0, 0, 0}),
                          Frame22("GP1", Latin1Text("Group")), Frame22("MVN", Latin1Text("M")),
                          Frame22("TCT", Latin1Text("C")), Frame22("TDS", Latin1Text("D")),
                          Frame22("TID", Latin1Text("I")), Frame22("WFD", Ascii("http://x")),
                          Frame22("TS2", Latin1Text("S")), Frame22("GP1", Latin1Text("2"))})),
         kSound});
    Write("a.mp3", song);
    EXPECT_EQ(Store("a.mp3"), EWriteProblem::None);
    EXPECT_EQ(m_report.m_nVersionBefore, 2);
    std::string converted;
    for (CWiderId const& id : m_report.m_vConverted) {
        converted += id.m_sOld + "=" + id.m_sNew + " ";
    }
    EXPECT_EQ(converted, "PCS=PCST GP1=GRP1 MVN=MVNM TCT=TCAT TDS=TDES TID=TGID WFD=WFED ");
    EXPECT_EQ(Ids("a.mp3"), "TIT2 PCST GRP1 MVNM TCAT TDES TGID WFED TSO2 GRP1 TBPM ");
    EXPECT_EQ(Text("a.mp3", "GRP1"), "Group");
    CTagStoreOptions options;
    options.m_bWiderIds = false;
    ExpectLeft("b.mp3", song, EWriteProblem::UnknownFrameId, options);
}

TEST_F(TagStoreTest, AnIdThatNobodyKnowsIsReadButNotWritten) {
    ExpectLeft("a.mp3",
               Joined({TagOf(2, Joined({Frame22("ZZZ", {1, 2}), Frame22("TBP", Latin1Text("97"))})),
                       kSound}),
               EWriteProblem::UnknownFrameId);
    EXPECT_EQ(m_report.m_sTextBefore.ToUtf8(), "97");
    EXPECT_EQ(Text("a.mp3", "TBPM"), "97");
}

TEST_F(TagStoreTest, EncodedFramesAreReadAsFarAsTheyCanBeAndNotWritten) {
    // A data length of 3 in four bytes of 7 bits, then the text.
    TagBytes const told = Joined({{0, 0, 0, 3}, Latin1Text("97")});
    for (int const value : {0x01, 0x03, 0x04, 0x08, 0x09, 0x40, 0x41}) {
        auto const flags = static_cast<std::uint8_t>(value);
        TagBytes const group = (flags & 0x40) != 0 ? TagBytes{0x80} : TagBytes();
        TagBytes const body = (flags & 0x01) != 0 ? told : Latin1Text("97");
        TagBytes const tempo = Frame24("TBPM", Joined({group, body}), 0, flags);
        ExpectLeft("a.mp3", Joined({TagOf(4, tempo), kSound}), EWriteProblem::EncodedFrames);
        bool const isReadable = (flags & 0x0C) == 0;
        EXPECT_EQ(Text("a.mp3", "TBPM"), isReadable ? "97" : "<none>") << int{flags};
        ExpectLeft("b.mp3",
                   Joined({TagOf(4, Joined({Frame24("TIT2", body, 0, flags),
                                            Frame24("TPE1", Latin1Text("A"))})),
                           kSound}),
                   EWriteProblem::EncodedFrames);
    }
    // In version 2.3 those bits mean something else or nothing.
    Write("c.mp3", Joined({TagOf(3, Frame23("TIT2", Latin1Text("Title"), 0, 0x01)), kSound}));
    EXPECT_EQ(Store("c.mp3"), EWriteProblem::None);
}

TEST_F(TagStoreTest, WhoHasNotDecodedAsksForMpegFrames) {
    CTagStoreOptions options;
    options.m_bNeedsMpegChain = true;
    ExpectLeft("a.mp3", Ascii("<!DOCTYPE html><html><body>404</body></html>"),
               EWriteProblem::NotMpegAudio, options);
    ExpectLeft("b.mp3", Joined({TagOf(3, kTitle), FakeAudio(9000)}), EWriteProblem::NotMpegAudio,
               options);
    ExpectLeft("c.mp3", Joined({{0, 0, 0, 8}, Ascii("free"), {0, 0, 0, 8}, Ascii("moov")}),
               EWriteProblem::NotMpegAudio, options);
    ExpectLeft("d.mp3", Joined({{0, 0, 0, 8}, Ascii("ftyp"), kSound}), EWriteProblem::OtherFormat);
    Write("e.mp3", Joined({TagOf(3, kTitle), kSound}));
    EXPECT_EQ(Store("e.mp3", options), EWriteProblem::None);
}

TEST_F(TagStoreTest, AnArchiveOfSongsIsNotWrittenByWhoeverHasHeardItEither) {
    TagBytes const archive = Joined({Ascii("song.mp3"), Zeros(249), Ascii("ustar"), Zeros(250)});
    ExpectLeft("a.mp3", Joined({archive, kSound}), EWriteProblem::NotMpegAudio);
    ExpectLeft("b.mp3", Joined({Ascii("PK\3\4"), FakeAudio(40), kSound}),
               EWriteProblem::NotMpegAudio);
    // What was heard may have foreign bytes ahead, as long as they are of no kind that is known.
    Write("c.mp3", Joined({FakeAudio(9000), kSound}));
    EXPECT_EQ(Store("c.mp3"), EWriteProblem::None);
}

TEST_F(TagStoreTest, WhatCannotBeReadOrWouldBeLostIsRefused) {
    ExpectLeft("a.mp3", Joined({TagHeader(3, 90'000), kSound}), EWriteProblem::TagUnreadable);
    ExpectLeft("b.mp3", Joined({TagOf(3, Joined({kTitle, Zeros(30), {1}})), kSound}),
               EWriteProblem::UnknownData);
    std::filesystem::create_directory(m_folder / "c.mp3");
    EXPECT_EQ(Store("c.mp3"), EWriteProblem::NotWritable);
    EXPECT_EQ(Store("none.mp3"), EWriteProblem::NotWritable);
}

TEST_F(TagStoreTest, ATagOfMoreThan65536FramesIsNeitherReadNorMade) {
    TagBytes const frame = Frame23("TXXX", {0, 0});
    TagBytes frames;
    for (int i = 0; i < 65'535; ++i) {
        frames.insert(frames.end(), frame.begin(), frame.end());
    }
    Write("a.mp3", Joined({TagOf(3, frames), kSound}));
    EXPECT_EQ(Store("a.mp3"), EWriteProblem::None);
    EXPECT_EQ(Text("a.mp3", "TBPM"), "128.00");
    frames.insert(frames.end(), frame.begin(), frame.end());
    ExpectLeft("c.mp3", Joined({TagOf(3, frames), kSound}), EWriteProblem::TagTooLarge);
    frames.insert(frames.end(), frame.begin(), frame.end());
    ExpectLeft("b.mp3", Joined({TagOf(3, frames), kSound}), EWriteProblem::TagUnreadable);
    CID3Tag tag;
    EXPECT_EQ(tag.OpenFile(Path("b.mp3")), kStatusFailure);
    EXPECT_EQ(tag.GetFrames().GetCount(), 0U);
}

} // namespace
