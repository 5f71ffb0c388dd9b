// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ID3TagFixture.h"

#include "support/FailingAllocation.h"

using ID3TagParseTest = CID3TagFixture;

TEST_F(ID3TagParseTest, MissingFileFails) {
    EXPECT_EQ(m_tag.OpenFile(CString::FromPath(m_folder / "none")), kStatusFailure);
    EXPECT_EQ(m_tag.OpenFile(CString::FromPath(m_folder.Path())), kStatusFailure);
}

TEST_F(ID3TagParseTest, FileWithoutATagHasNone) {
    for (TagBytes const& bytes :
         {TagBytes(), Ascii("ID3\x03"), FakeAudio(100),
          Joined({Ascii("ID2"), {3, 0, 0, 0, 0, 0, 0}}), TagOf(1, Frame23("TIT2", Latin1Text("A"))),
          TagOf(5, Frame23("TIT2", Latin1Text("A")))}) {
        EXPECT_EQ(Open(bytes), kStatusNothing);
        EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
        EXPECT_EQ(m_tag.GetTagSize(), 0U);
    }
}

TEST_F(ID3TagParseTest, VersionIsToldAlsoWhenItIsNotRead) {
    EXPECT_EQ(Open(TagOf(5, Frame23("TIT2", Latin1Text("A")))), kStatusNothing);
    EXPECT_EQ(m_tag.GetVersion(), 5);
    EXPECT_EQ(Open(FakeAudio(100)), kStatusNothing);
    EXPECT_EQ(m_tag.GetVersion(), 0);
}

TEST_F(ID3TagParseTest, SizeOfZeroIsATagWithoutFrames) {
    EXPECT_EQ(Open(TagHeader(3, 0)), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_EQ(m_tag.GetTagSize(), 10U);
}

TEST_F(ID3TagParseTest, ReadsTheFramesOfVersion23UpToThePadding) {
    TagBytes const body = Joined({Frame23("TIT2", Latin1Text("Title"), 0x20, 0x01),
                                  Frame23("TBPM", Latin1Text("120")), Zeros(200)});
    EXPECT_EQ(Open(Joined({TagOf(3, body), FakeAudio(10)})), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 2U);
    EXPECT_EQ(Text("TIT2"), "Title");
    EXPECT_EQ(Text("TBPM"), "120");
    EXPECT_EQ(Text("TPE1"), "<none>");
    // (10 + 6) + (10 + 4) + 200 of body behind the 10 bytes of the header
    EXPECT_EQ(m_tag.GetTagSize(), 240U);
    EXPECT_EQ(m_tag.GetPendingBodySize(), 30U);
    EXPECT_EQ(m_tag.GetVersion(), 3);
    EXPECT_EQ(m_tag.GetRevision(), 0);
    EXPECT_FALSE(m_tag.HasUnreachedData());
    CID3Frame* frame = nullptr;
    ASSERT_TRUE(m_tag.GetExistingFrame("TIT2", &frame));
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    frame->GetData(&header, &data, &size);
    EXPECT_EQ(header.m_nStatusFlags, 0x20);
    EXPECT_EQ(header.m_nFormatFlags, 0x01);
}

TEST_F(ID3TagParseTest, SizesOfVersion24AreSyncsafe) {
    TagBytes const text = Latin1Text(std::string(127, 'x'));
    TagBytes const frame = Frame24("TIT2", text);
    EXPECT_EQ(TagBytes(frame.begin() + 4, frame.begin() + 8), (TagBytes{0, 0, 1, 0}));
    EXPECT_EQ(Open(TagOf(4, frame)), kStatusOk);
    EXPECT_EQ(Body("TIT2").size(), 128U);
}

TEST_F(ID3TagParseTest, SizesOfVersion23AreNot) {
    EXPECT_EQ(Open(TagOf(3, Frame23("TIT2", Latin1Text(std::string(255, 'x'))))), kStatusOk);
    EXPECT_EQ(Body("TIT2").size(), 256U);
}

TEST_F(ID3TagParseTest, FramesOfVersion22GetTheirNewNames) {
    TagBytes const picture = Joined({{0x00}, Ascii("PNG"), {0x03}, Ascii("d"), {0x00}, Zeros(9)});
    EXPECT_EQ(Open(TagOf(2, Joined({Frame22("TT2", Latin1Text("Title")), Frame22("PIC", picture),
                                    Zeros(20)}))),
              kStatusOk);
    EXPECT_EQ(Text("TIT2"), "Title");
    EXPECT_EQ(Body("APIC"),
              Joined({{0x00}, Ascii("image/png"), {0x00}, {0x03}, Ascii("d"), {0x00}, Zeros(9)}));
    EXPECT_EQ(m_tag.GetVersion(), 2);
}

TEST_F(ID3TagParseTest, ShortPictureOfVersion22StaysAsItIs) {
    TagBytes const picture = Joined({{0x00}, Ascii("PNG"), Zeros(11)});
    EXPECT_EQ(Open(TagOf(2, Frame22("PIC", picture))), kStatusOk);
    EXPECT_EQ(Body("APIC"), picture);
}

TEST_F(ID3TagParseTest, WalkStopsAtAFrameOfSizeZero) {
    TagBytes const rest = Frame23("TBPM", Latin1Text("120"));
    EXPECT_EQ(Open(TagOf(3, Joined({Frame23("TIT2", Latin1Text("A")), Frame23("TPE1", {}), rest}))),
              kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, HeaderOfNoBytesBeforeThePaddingIsNothingToLose) {
    TagBytes const title = Frame23("TIT2", Latin1Text("A"));
    TagBytes const empty = Frame23("TPE1", {});
    for (TagBytes const& rest : {empty, Joined({empty, Zeros(30)}),
                                 Joined({empty, Frame23("TCON", {}, 0x40, 0x80), Zeros(1)})}) {
        EXPECT_EQ(Open(TagOf(3, Joined({title, rest}))), kStatusOk);
        EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
        EXPECT_FALSE(m_tag.HasUnreachedData());
    }
    EXPECT_EQ(
        Open(TagOf(2, Joined({Frame22("TT2", Latin1Text("A")), Frame22("TP1", {}), Zeros(9)}))),
        kStatusOk);
    EXPECT_FALSE(m_tag.HasUnreachedData());
    // What has no id of capitals and digits may be anything.
    EXPECT_EQ(Open(TagOf(3, Joined({title, Frame23("tit2", {}), Zeros(30)}))), kStatusOk);
    EXPECT_TRUE(m_tag.HasUnreachedData());
    EXPECT_EQ(Open(TagOf(3, Joined({title, empty, Zeros(30), {1}}))), kStatusOk);
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, WalkStopsAtAFrameThatOverlapsTheEnd) {
    TagBytes body = Frame23("TIT2", Latin1Text("ABC"));
    body[7] = 5; // one byte more than there is
    EXPECT_EQ(Open(Joined({TagOf(3, body), FakeAudio(100)})), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_TRUE(m_tag.HasUnreachedData());
    body[7] = 4;
    EXPECT_EQ(Open(Joined({TagOf(3, body), FakeAudio(100)})), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
    EXPECT_FALSE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, HugeFrameSizesDoNotWrap) {
    TagBytes body = Frame23("TIT2", Latin1Text("ABC"));
    for (std::size_t i = 4; i < 8; ++i) {
        body[i] = 0xFF;
    }
    EXPECT_EQ(Open(TagOf(3, Joined({body, Zeros(30)}))), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_EQ(Open(TagOf(4, Joined({body, Zeros(30)}))), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
}

TEST_F(ID3TagParseTest, HeaderNeedsAByteBehindIt) {
    // Ten bytes left: a header of version 2.3 is only looked at when something follows it.
    EXPECT_EQ(Open(TagOf(3, Frame23("TIT2", {}))), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_EQ(Open(TagOf(2, Frame22("XYZ", {}))), kStatusOk); // six bytes: the id isn't looked at
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
}

TEST_F(ID3TagParseTest, WholeTagUnsynchronizationShortensTheBody) {
    // The frame's size counts the decoded bytes: FF E0.
    TagBytes const decoded = Frame23("APIC", {0xFF, 0xE0});
    TagBytes encoded = decoded;
    encoded.insert(encoded.end() - 1, 0x00);
    EXPECT_EQ(Open(Joined({TagOf(3, encoded, 0x80), FakeAudio(5)})), kStatusOk);
    EXPECT_EQ(Body("APIC"), (TagBytes{0xFF, 0xE0}));
    EXPECT_EQ(m_tag.GetTagSize(), 10U + 13U);
    EXPECT_FALSE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, Version24DecodesTheTagThenTheFrame) {
    // FF 00 00 00 in the file, FF 00 00 after the tag's pass, FF 00 after the frame's.
    TagBytes const once = Frame24("APIC", {0xFF, 0x00, 0x00}, 0, 0x02);
    TagBytes twice = once;
    twice.insert(twice.end() - 2, 0x00);
    EXPECT_EQ(Open(TagOf(4, twice, 0x80)), kStatusOk);
    EXPECT_EQ(Body("APIC"), (TagBytes{0xFF, 0x00}));
}

TEST_F(ID3TagParseTest, PinsExtendedHeaderIsSkippedWithoutItsSizeField) {
    // The size says 6, so the walk starts at the field that tells the padding.
    TagBytes const extended = {0x00, 0x00, 0x00, 0x06,  // size
                               0x00, 0x00,              // flags
                               0x00, 0x00, 0x00, 0x00}; // padding
    TagBytes const body = Joined({extended, Frame23("TIT2", Latin1Text("A"))});
    EXPECT_EQ(Open(TagOf(3, body, 0x40)), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_TRUE(m_tag.HasUnreachedData());
    // A header of ten bytes in all whose size counts them all is passed.
    TagBytes whole = body;
    whole[3] = 10;
    EXPECT_EQ(Open(TagOf(3, whole, 0x40)), kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
    EXPECT_FALSE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, PinsExtendedHeaderOfVersion24IsNotSkipped) {
    TagBytes const extended = {0x00, 0x00, 0x00, 0x06, 0x01, 0x00};
    EXPECT_EQ(Open(TagOf(4, Joined({extended, Frame24("TIT2", Latin1Text("A"))}), 0x40)),
              kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, ExtendedHeaderPastTheEndLeavesNoFrames) {
    TagBytes const frame = Frame23("TIT2", Latin1Text("A"));
    for (TagBytes const& size :
         {TagBytes{0x00, 0x00, 0x00, 0x10}, TagBytes{0xFF, 0xFF, 0xFF, 0xFF}}) {
        EXPECT_EQ(Open(TagOf(3, Joined({size, frame}), 0x40)), kStatusOk);
        EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
        EXPECT_TRUE(m_tag.HasUnreachedData());
    }
}

TEST_F(ID3TagParseTest, ExtendedHeaderThatJumpsOverFramesIsNoticed) {
    TagBytes const skipped = Frame23("TPE1", Latin1Text("Artist"));
    TagBytes const size = {0x00, 0x00, 0x00, static_cast<std::uint8_t>(4 + skipped.size())};
    EXPECT_EQ(Open(TagOf(3, Joined({size, skipped, Frame23("TIT2", Latin1Text("A"))}), 0x40)),
              kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, ExtendedHeaderInUnderFourBytesIsFilledWithZeros) {
    EXPECT_EQ(Open(TagOf(3, {0x00, 0x00}, 0x40)), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_EQ(Open(TagOf(3, {}, 0x40)), kStatusOk);
}

TEST_F(ID3TagParseTest, JunkBehindThePaddingIsNoticed) {
    TagBytes const body = Joined({Frame23("TIT2", Latin1Text("A")), Zeros(20), {0x01}});
    EXPECT_EQ(Open(TagOf(3, body)), kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, AudioInsideTheClaimedTagIsNoticed) {
    TagBytes const frame = Frame23("TIT2", Latin1Text("A"));
    TagBytes const header = TagHeader(3, static_cast<std::uint32_t>(frame.size()) + 50);
    TagBytes const audio = Joined({{0xFF, 0xFB, 0x90, 0x64}, TagBytes(96, 0x55)});
    EXPECT_EQ(Open(Joined({header, frame, audio})), kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
    EXPECT_TRUE(m_tag.HasUnreachedData());
}

TEST_F(ID3TagParseTest, TagPastTheEndOfTheFileFails) {
    TagBytes const frame = Frame23("TIT2", Latin1Text("A"));
    EXPECT_EQ(Open(Joined({TagHeader(3, static_cast<std::uint32_t>(frame.size()) + 1), frame})),
              kStatusFailure);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
    EXPECT_EQ(m_tag.GetTagSize(), 10U + 12U + 1U);
    EXPECT_EQ(m_tag.GetVersion(), 3);
    // The most that a header can claim, in a file of a few bytes.
    EXPECT_EQ(Open(Joined({Ascii("ID3"), {3, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}, frame})),
              kStatusFailure);
}

TEST_F(ID3TagParseTest, BodyWithoutMemoryFails) {
    WriteBytes(m_sFile, TagOf(3, Frame23("TIT2", Latin1Text("A"))));
    CFailingAllocation const failing;
    EXPECT_EQ(m_tag.OpenFile(Path()), kStatusFailure);
}

TEST_F(ID3TagParseTest, OpeningAgainForgetsTheFormerFrames) {
    ASSERT_EQ(Open(TagOf(3, Frame23("TIT2", Latin1Text("A")))), kStatusOk);
    ASSERT_EQ(Open(TagOf(3, Frame23("TPE1", Latin1Text("B")))), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
    EXPECT_EQ(Text("TIT2"), "<none>");
}
