// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ID3TagFixture.h"

#include <array>

using ID3TagTest = CID3TagFixture;

TEST_F(ID3TagTest, FirstFrameOfAnIdCounts) {
    ASSERT_EQ(Open(TagOf(
                  3, Joined({Frame23("TIT2", Latin1Text("A")), Frame23("TIT2", Latin1Text("B"))}))),
              kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
}

TEST_F(ID3TagTest, OnlyPlainEnglishCommentsCount) {
    TagBytes const german = Frame23("COMM", Joined({{0x00}, Ascii("deu"), {0x00}, Ascii("G")}));
    TagBytes const described =
        Frame23("COMM", Joined({{0x00}, Ascii("eng"), Ascii("d"), {0x00}, Ascii("D")}));
    TagBytes const plain = Frame23("COMM", Joined({{0x00}, Ascii("eng"), {0x00}, Ascii("P")}));
    ASSERT_EQ(Open(TagOf(3, Joined({german, described}))), kStatusOk);
    EXPECT_EQ(Text("COMM"), "<none>");
    ASSERT_EQ(Open(TagOf(3, Joined({german, described, plain}))), kStatusOk);
    EXPECT_EQ(Text("COMM"), "P");
}

TEST_F(ID3TagTest, EnglishCommentThatCannotBeConvertedCounts) {
    ASSERT_EQ(Open(TagOf(3, Frame23("COMM", Joined({{0x01}, Ascii("eng"), {0x41}})))), kStatusOk);
    CID3Frame* frame = nullptr;
    EXPECT_TRUE(m_tag.GetExistingFrame("COMM", &frame));
    EXPECT_NE(frame, nullptr);
    EXPECT_EQ(Text("COMM"), "<none>");
}

TEST_F(ID3TagTest, TextEndsAtItsFirstZero) {
    ASSERT_EQ(Open(TagOf(4, Joined({Frame24("TIT2", Latin1Text(std::string("A\0B", 3))),
                                    Frame24("TPE1", {0x00})}))),
              kStatusOk);
    EXPECT_EQ(Text("TIT2"), "A");
    EXPECT_EQ(Text("TPE1"), "");
}

TEST_F(ID3TagTest, EqualTextChangesNothing) {
    ASSERT_EQ(Open(TagOf(3, Joined({Frame23("TBPM", WrittenText("120")),
                                    Frame23("TIT2", Latin1Text("A"))}))),
              kStatusOk);
    EXPECT_EQ(m_tag.SetString("TBPM", L"120"), kStatusNothing);
    EXPECT_EQ(m_tag.SetString("TIT2", L"A"), kStatusNothing);
    bool rewritten = false;
    EXPECT_EQ(m_tag.UpdateFile(&rewritten), kStatusNothing);
    EXPECT_FALSE(rewritten);
}

TEST_F(ID3TagTest, OtherTextReplacesTheFramesBody) {
    ASSERT_EQ(Open(TagOf(3, Frame23("TBPM", Latin1Text("120")))), kStatusOk);
    EXPECT_EQ(m_tag.SetString("TBPM", L"128.00"), kStatusOk);
    EXPECT_EQ(Body("TBPM"), WrittenText("128.00"));
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
}

TEST_F(ID3TagTest, EmptyTextOnAFrameWritesAnEmptyOne) {
    ASSERT_EQ(Open(TagOf(3, Frame23("TBPM", Latin1Text("120")))), kStatusOk);
    EXPECT_EQ(m_tag.SetString("TBPM", L""), kStatusOk);
    EXPECT_EQ(Body("TBPM"), (TagBytes{0x01, 0xFF, 0xFE, 0x00, 0x00}));
}

TEST_F(ID3TagTest, EmptyTextWithoutAFrameMakesNone) {
    ASSERT_EQ(Open(FakeAudio(20)), kStatusNothing);
    EXPECT_EQ(m_tag.SetString("TBPM", L""), kStatusNothing);
    EXPECT_EQ(m_tag.SetString("TBPM", nullptr), kStatusNothing);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 0U);
}

TEST_F(ID3TagTest, UnreadableTextCountsAsEmpty) {
    ASSERT_EQ(Open(TagOf(3, Frame23("TBPM", {0x01, 0x41}))), kStatusOk);
    EXPECT_EQ(m_tag.SetString("TBPM", L""), kStatusNothing);
    EXPECT_EQ(Body("TBPM"), (TagBytes{0x01, 0x41}));
    EXPECT_EQ(m_tag.SetString("TBPM", L"1"), kStatusOk);
    EXPECT_EQ(Text("TBPM"), "1");
}

TEST_F(ID3TagTest, NewFrameGoesToTheEnd) {
    ASSERT_EQ(Open(TagOf(3, Frame23("TIT2", Latin1Text("A")))), kStatusOk);
    EXPECT_EQ(m_tag.SetString("TBPM", L"1"), kStatusOk);
    CID3Frame* frame = nullptr;
    ASSERT_TRUE(m_tag.GetFrames().EnumItems(1, &frame));
    EXPECT_EQ(frame->IsFrameIdMatch("TBPM"), kStatusOk);
    EXPECT_EQ(m_tag.GetPendingBodySize(), 12U + 10U + 7U);
}

TEST_F(ID3TagTest, PrivateDataAreFoundByTheirOwner) {
    ASSERT_EQ(Open(TagOf(3, Joined({Frame23("PRIV", Joined({Ascii("a"), {0x00}, {1, 2}})),
                                    Frame23("PRIV", Joined({Ascii("b"), {0x00}, {3}})),
                                    Frame23("PRIV", Joined({Ascii("c"), {0x00}}))}))),
              kStatusOk);
    std::array<std::uint8_t, 4> data = {9, 9, 9, 9};
    std::uint32_t size = 77;
    EXPECT_EQ(m_tag.GetPrivateBinaryData("x", data.data(), &size), kStatusFailure);
    EXPECT_EQ(size, 77U);
    EXPECT_EQ(m_tag.GetPrivateBinaryData("a", nullptr, &size), kStatusOk);
    EXPECT_EQ(size, 2U);
    EXPECT_EQ(m_tag.GetPrivateBinaryData("a", data.data(), &size), kStatusOk);
    EXPECT_EQ(data, (std::array<std::uint8_t, 4>{1, 2, 9, 9}));
    EXPECT_EQ(m_tag.GetPrivateBinaryData("b", data.data(), &size), kStatusOk);
    EXPECT_EQ(size, 1U);
    EXPECT_EQ(m_tag.GetPrivateBinaryData("c", data.data(), &size), kStatusFailure);
    EXPECT_EQ(size, 0U);
}

TEST_F(ID3TagTest, PrivateDataAreReplacedOrAppended) {
    ASSERT_EQ(Open(TagOf(3, Frame23("PRIV", Joined({Ascii("a"), {0x00}, {1, 2}})))), kStatusOk);
    std::uint8_t const data[] = {7, 8, 9};
    EXPECT_EQ(m_tag.SetPrivateBinaryData("a", data, 3), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 1U);
    EXPECT_EQ(m_tag.SetPrivateBinaryData("b", data, 2), kStatusOk);
    EXPECT_EQ(m_tag.GetFrames().GetCount(), 2U);
    std::array<std::uint8_t, 3> back = {};
    std::uint32_t size = 0;
    EXPECT_EQ(m_tag.GetPrivateBinaryData("a", back.data(), &size), kStatusOk);
    EXPECT_EQ(back, (std::array<std::uint8_t, 3>{7, 8, 9}));
    EXPECT_EQ(m_tag.GetPrivateBinaryData("b", nullptr, &size), kStatusOk);
    EXPECT_EQ(size, 2U);
}

TEST_F(ID3TagTest, LookAheadFindsUnknownIds) {
    auto const look = [this](TagBytes const& bytes) {
        WriteBytes(m_sFile, bytes);
        return CID3Tag::AreFrameIdsKnown(Path());
    };
    TagBytes const known = Frame22("TT2", Latin1Text("A"));
    EXPECT_EQ(look(TagOf(2, known)), kStatusOk);
    EXPECT_EQ(look(TagOf(2, Joined({known, Zeros(30)}))), kStatusOk);
    EXPECT_EQ(look(TagOf(2, Joined({known, Frame22("PCS", Latin1Text("A"))}))), kStatusNothing);
    EXPECT_EQ(look(TagOf(2, Frame22("TDS", {}))), kStatusOk); // six bytes only: never looked at
    EXPECT_EQ(look(TagOf(2, Joined({Frame22("TDS", {}), {0x00}}))), kStatusNothing);
    EXPECT_EQ(look(TagOf(2, Joined({Frame22("TT2", {}), Frame22("PCS", {})}))), kStatusOk);
    EXPECT_EQ(look(TagOf(3, Frame23("PCST", Latin1Text("A")))), kStatusOk);
    EXPECT_EQ(look(FakeAudio(50)), kStatusOk);
    EXPECT_EQ(CID3Tag::AreFrameIdsKnown(CString::FromPath(m_folder / "none")), kStatusOk);
}

TEST_F(ID3TagTest, LookAheadDecodesUnsynchronizedTags) {
    // Decoded, the second frame begins right behind FF; encoded, a 00 stands between them.
    TagBytes const first = Frame22("TT2", {0x00, 0xFF});
    TagBytes const second = Frame22("PCS", Latin1Text("A"));
    WriteBytes(m_sFile, TagOf(2, Joined({first, {0x00}, second}), 0x80));
    EXPECT_EQ(CID3Tag::AreFrameIdsKnown(Path()), kStatusNothing);
}

TEST_F(ID3TagTest, EveryVersion22IdHasItsNewName) {
    constexpr char kPairs[] =
        "BUF RBUF CNT PCNT COM COMM CRA AENC CRM ENCR ETC ETCO EQU EQUA GEO GEOB "
        "IPL IPLS LNK LINK MCI MCDI MLL MLLT PIC APIC POP POPM REV RVRB RVA RVAD "
        "SLT SYLT STC SYTC TAL TALB TBP TBPM TCM TCOM TCO TCON TCP TCMP TCR TCOP "
        "TDA TDAT TDY TDLY TEN TENC TFT TFLT TIM TIME TKE TKEY TLA TLAN TLE TLEN "
        "TMT TMED TOA TOPE TOF TOFN TOL TOLY TOR TORY TOT TOAL TP1 TPE1 TP2 TPE2 "
        "TP3 TPE3 TP4 TPE4 TPA TPOS TPB TPUB TRC TSRC TRD TRDA TRK TRCK TS2 TSO2 "
        "TSA TSOA TSC TSOC TSI TSIZ TSP TSOP TSS TSSE TST TSOT TT1 TIT1 TT2 TIT2 "
        "TT3 TIT3 TXT TEXT TXX TXXX TYE TYER UFI UFID ULT USLT WAF WOAF WAR WOAR "
        "WAS WOAS WCM WCOM WCP WCOP WPB WPUB WXX WXXX ";
    std::string const pairs = kPairs;
    ASSERT_EQ(pairs.size(), 69U * 9U);
    for (std::size_t i = 0; i < pairs.size(); i += 9) {
        std::string id(4, '-');
        EXPECT_EQ(CID3Tag::MapV2FrameIdToV3(pairs.substr(i, 3).c_str(), id.data()), 1);
        EXPECT_EQ(id, pairs.substr(i + 4, 4)) << pairs.substr(i, 3);
    }
}

TEST_F(ID3TagTest, OnlyTheFirstThreeCharactersOfAnOldIdCount) {
    std::string id(5, '-');
    EXPECT_EQ(CID3Tag::MapV2FrameIdToV3("TBPxyz", id.data()), 1);
    EXPECT_EQ(id, "TBPM-");
}

TEST_F(ID3TagTest, UpdateableMeansThatItOpensForWriting) {
    WriteBytes(m_sFile, FakeAudio(5));
    EXPECT_EQ(CID3Tag::IsFileUpdateable(Path()), kStatusOk);
    EXPECT_EQ(CID3Tag::IsFileUpdateable(CString::FromPath(m_folder / "none")), kStatusNothing);
    EXPECT_EQ(CID3Tag::IsFileUpdateable(CString::FromPath(m_folder.Path())), kStatusNothing);
}

TEST_F(ID3TagTest, TemporaryNameTakesItsExtensionFromTheTag) {
    (void)m_tag.OpenFile(L"/music/song.mp3");
    EXPECT_TRUE(m_tag.CreateTempFileName() == L"/music/song.MP~");
    (void)m_tag.OpenFile(L"/mu.sic/song");
    EXPECT_TRUE(m_tag.CreateTempFileName() == L"/mu.sic/song.MP~");
}

using ID3TagDeathTest = ID3TagTest;

TEST_F(ID3TagDeathTest, PinsUnknownVersion22IdEndsTheProcess) {
    // The id comes before the size: an unknown frame of size 0 counts.
    WriteBytes(m_sFile, TagOf(2, Joined({Frame22("PCS", {}), {0x00}})));
    EXPECT_DEATH((void)m_tag.OpenFile(Path()), "IDTag/ID3Tag:[0-9]+.*FALSE.*song\\.mp3");
    char id[4] = {};
    EXPECT_DEATH((void)CID3Tag::MapV2FrameIdToV3("PCS", id), "IDTag/ID3Tag:[0-9]+.*FALSE");
}
