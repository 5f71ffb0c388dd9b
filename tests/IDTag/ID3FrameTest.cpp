// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Frame.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

ID3V2_3_FRAMEHEADER HeaderOf(char const* id, std::uint8_t status = 0, std::uint8_t format = 0) {
    ID3V2_3_FRAMEHEADER header = {};
    std::memcpy(header.m_sId, id, kFrameIdBytes);
    header.m_nStatusFlags = status;
    header.m_nFormatFlags = format;
    return header;
}

void SetBody(CID3Frame& frame, char const* id, Bytes const& body) {
    ID3V2_3_FRAMEHEADER const header = HeaderOf(id);
    ASSERT_EQ(frame.SetData(&header, body.data(), static_cast<std::uint32_t>(body.size())),
              kStatusOk);
}

Bytes BodyOf(CID3Frame& frame) {
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    return frame.GetData(&header, &data, &size) == kStatusOk ? Bytes(data, data + size) : Bytes();
}

/// Text of a frame with this body; "<failed>" when it has none.
std::wstring TextOf(char const* id, Bytes const& body) {
    CID3Frame frame;
    SetBody(frame, id, body);
    std::wstring text;
    return frame.GetString(text) == kStatusOk ? text : L"<failed>";
}

Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (Bytes const& part : parts) {
        out.insert(out.end(), part.begin(), part.end());
    }
    return out;
}

} // namespace

TEST(ID3FrameTest, NewFrameHasAZeroHeaderAndNoBody) {
    CID3Frame frame;
    ID3V2_3_FRAMEHEADER header = HeaderOf("XXXX", 1, 1);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 7;
    EXPECT_EQ(frame.GetData(&header, &data, &size), kStatusFailure);
    ID3V2_3_FRAMEHEADER const zero = {};
    EXPECT_EQ(std::memcmp(&header, &zero, sizeof header), 0);
    std::uint32_t length = 0;
    EXPECT_EQ(frame.GetTotalLength(&length), kStatusOk);
    EXPECT_EQ(length, 10U);
    std::wstring text;
    EXPECT_EQ(frame.GetString(text), kStatusFailure);
}

TEST(ID3FrameTest, InitializeTakesTheFirstFourCharacters) {
    CID3Frame frame;
    EXPECT_EQ(frame.Initialize("TBPMX"), kStatusOk);
    EXPECT_EQ(frame.IsFrameIdMatch("TBPM"), kStatusOk);
    EXPECT_EQ(frame.IsFrameIdMatch("TBPMY"), kStatusOk);
    EXPECT_EQ(frame.IsFrameIdMatch("TBPN"), kStatusNothing);
    EXPECT_EQ(frame.IsFrameIdMatch("TBP"), kStatusNothing);
}

TEST(ID3FrameTest, ShortIdLeavesTheRestZero) {
    CID3Frame frame;
    EXPECT_EQ(frame.Initialize("TT"), kStatusOk);
    EXPECT_EQ(frame.IsFrameIdMatch("TT"), kStatusOk);
    EXPECT_EQ(frame.IsFrameIdMatch("TT2"), kStatusNothing);
}

TEST(ID3FrameTest, GetDataRefreshesTheSizeBigEndian) {
    CID3Frame frame;
    Bytes const body(0x0102, 0x41);
    SetBody(frame, "TIT2", body);
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(frame.GetData(&header, &data, &size), kStatusOk);
    EXPECT_EQ(size, 0x0102U);
    EXPECT_EQ(header.m_nBodyBytes[0], 0x00);
    EXPECT_EQ(header.m_nBodyBytes[1], 0x00);
    EXPECT_EQ(header.m_nBodyBytes[2], 0x01);
    EXPECT_EQ(header.m_nBodyBytes[3], 0x02);
    std::uint32_t length = 0;
    frame.GetTotalLength(&length);
    EXPECT_EQ(length, 0x0102U + 10U);
}

TEST(ID3FrameTest, BothByteOrdersReadAlike) {
    EXPECT_EQ(TextOf("TIT2", {0x01, 0xFE, 0xFF, 0x00, 0x41, 0x00, 0x42}), L"AB");
    EXPECT_EQ(TextOf("TIT2", {0x01, 0xFF, 0xFE, 0x41, 0x00, 0x42, 0x00}), L"AB");
}

TEST(ID3FrameTest, MarkedTextWithoutItsMarkFails) {
    EXPECT_EQ(TextOf("TIT2", {0x01, 0x41}), L"<failed>");
    EXPECT_EQ(TextOf("TIT2", {0x01}), L"<failed>");
    EXPECT_EQ(TextOf("TIT2", {0x01, 0x41, 0x00, 0x42, 0x00}), L"<failed>");
    EXPECT_EQ(TextOf("TIT2", {0x01, 0xFE, 0xFE}), L"<failed>");
}

TEST(ID3FrameTest, FailedConversionEmptiesTheText) {
    std::wstring text = L"old";
    EXPECT_FALSE(CID3Frame::ByteArrayToWstring(1, {0x41}, text));
    EXPECT_EQ(text, L"");
}

TEST(ID3FrameTest, EncodingZeroWidensEveryByte) {
    EXPECT_EQ(TextOf("TIT2", {0x00, 0x41, 0xE9, 0xFF}), L"A\u00E9\u00FF");
    EXPECT_EQ(TextOf("TIT2", {0x00}), L"");
}

TEST(ID3FrameTest, PinsUtf8IsReadByteByByte) {
    EXPECT_EQ(TextOf("TIT2", {0x03, 0xC3, 0xA9}), L"\u00C3\u00A9");
}

TEST(ID3FrameTest, EncodingTwoIsBigEndianWithoutAMark) {
    EXPECT_EQ(TextOf("TIT2", {0x02, 0x00, 0x41, 0x01, 0x42}), L"A\u0142");
}

TEST(ID3FrameTest, EncodingsFromFourOnAreLittleEndianWithoutAMark) {
    EXPECT_EQ(TextOf("TIT2", {0x04, 0x41, 0x00, 0x42, 0x01}), L"A\u0142");
    EXPECT_EQ(TextOf("TIT2", {0xFF, 0x41, 0x00}), L"A");
}

TEST(ID3FrameTest, UnitFeffIsDroppedWhereverItStands) {
    EXPECT_EQ(TextOf("TIT2", {0x01, 0xFF, 0xFE, 0x41, 0x00, 0xFF, 0xFE, 0x42, 0x00}), L"AB");
    EXPECT_EQ(TextOf("TIT2", {0x02, 0xFE, 0xFF, 0x00, 0x41, 0xFE, 0xFF}), L"A");
    EXPECT_EQ(TextOf("TIT2", {0x04, 0xFF, 0xFE, 0x41, 0x00}), L"A");
}

TEST(ID3FrameTest, OddLastByteIsIgnored) {
    EXPECT_EQ(TextOf("TIT2", {0x01, 0xFF, 0xFE, 0x41, 0x00, 0x42}), L"A");
    EXPECT_EQ(TextOf("TIT2", {0x02, 0x00, 0x41, 0x00}), L"A");
}

TEST(ID3FrameTest, SurrogatesStayTwoUnits) {
    std::wstring const text = TextOf("TIT2", {0x01, 0xFF, 0xFE, 0x3D, 0xD8, 0x00, 0xDE});
    ASSERT_EQ(text.size(), 2U);
    EXPECT_EQ(static_cast<std::uint32_t>(text[0]), 0xD83DU);
    EXPECT_EQ(static_cast<std::uint32_t>(text[1]), 0xDE00U);
}

TEST(ID3FrameTest, SetStringWritesMarkedLittleEndianWithATerminator) {
    CID3Frame frame;
    frame.Initialize("TBPM");
    EXPECT_EQ(frame.SetString(L"AB"), kStatusOk);
    EXPECT_EQ(BodyOf(frame), (Bytes{0x01, 0xFF, 0xFE, 0x41, 0x00, 0x42, 0x00, 0x00, 0x00}));
}

TEST(ID3FrameTest, SetStringOfACommentIsEnglishWithoutADescription) {
    CID3Frame frame;
    frame.Initialize("COMM");
    EXPECT_EQ(frame.SetString(L"AB"), kStatusOk);
    EXPECT_EQ(BodyOf(frame), (Bytes{0x01,                               // encoding
                                    0x65, 0x6E, 0x67,                   // "eng"
                                    0xFF, 0xFE, 0x00, 0x00,             // description
                                    0xFF, 0xFE, 0x41, 0x00, 0x42, 0x00, // "AB"
                                    0x00, 0x00}));
    std::wstring text;
    EXPECT_EQ(frame.GetString(text), kStatusOk);
    EXPECT_EQ(text, std::wstring(L"AB\0", 3));
}

TEST(ID3FrameTest, PinsWritingKeepsTheLowSixteenBits) {
    CID3Frame frame;
    frame.Initialize("TIT2");
    frame.SetString(L"\U0001F600");
    EXPECT_EQ(BodyOf(frame), (Bytes{0x01, 0xFF, 0xFE, 0x00, 0xF6, 0x00, 0x00}));
}

TEST(ID3FrameTest, EmptyTextIsMarkAndTerminator) {
    CID3Frame frame;
    frame.Initialize("TIT2");
    frame.SetString(L"");
    EXPECT_EQ(BodyOf(frame), (Bytes{0x01, 0xFF, 0xFE, 0x00, 0x00}));
    Bytes bytes = {0x55};
    CID3Frame::WstringToByteArray(L"A", bytes);
    EXPECT_EQ(bytes, (Bytes{0xFF, 0xFE, 0x41, 0x00, 0x00, 0x00}));
}

TEST(ID3FrameTest, CommentTextFollowsTheFirstZero) {
    EXPECT_EQ(TextOf("COMM", {0x00, 'e', 'n', 'g', 'd', 0x00, 'A', 'B'}), L"AB");
    EXPECT_EQ(TextOf("COMM", {0x00, 'e', 'n', 'g', 0x00, 'A', 0x00, 'B'}),
              std::wstring(L"A\0B", 3));
}

TEST(ID3FrameTest, CommentWithoutAZeroIsEmpty) {
    EXPECT_EQ(TextOf("COMM", {0x00, 'e', 'n', 'g', 'd', 'e', 's'}), L"");
    EXPECT_EQ(TextOf("COMM", {0x00, 'e', 'n'}), L"");
}

TEST(ID3FrameTest, CommentInfoGivesLanguageAndDescription) {
    CID3Frame frame;
    SetBody(frame, "COMM", {0x00, 'd', 'e', 'u', 'X', 'Y', 0x00, 'A'});
    std::string language;
    std::wstring description;
    EXPECT_EQ(frame.GetCommentInfo(language, description), kStatusOk);
    EXPECT_EQ(language, "deu");
    EXPECT_EQ(description, L"XY");
}

TEST(ID3FrameTest, CommentInfoWithoutAZeroTakesAll) {
    CID3Frame frame;
    SetBody(frame, "COMM", {0x00, 'd', 'e', 'u', 'X', 'Y'});
    std::string language;
    std::wstring description;
    EXPECT_EQ(frame.GetCommentInfo(language, description), kStatusOk);
    EXPECT_EQ(description, L"XY");
}

TEST(ID3FrameTest, CommentInfoKeepsTheLanguageWhenTheDescriptionFails) {
    CID3Frame frame;
    SetBody(frame, "COMM", {0x01, 'e', 'n', 'g', 0x41});
    std::string language;
    std::wstring description = L"old";
    EXPECT_EQ(frame.GetCommentInfo(language, description), kStatusNothing);
    EXPECT_EQ(language, "eng");
    EXPECT_EQ(description, L"");
}

TEST(ID3FrameTest, CommentInfoOfAShortBodyGivesTheBytesThereAre) {
    CID3Frame frame;
    SetBody(frame, "COMM", {0x00, 'e', 'n'});
    std::string language;
    std::wstring description;
    EXPECT_EQ(frame.GetCommentInfo(language, description), kStatusOk);
    EXPECT_EQ(language, "en");
    EXPECT_EQ(description, L"");
}

TEST(ID3FrameTest, CommentInfoIsForCommentsOnly) {
    CID3Frame frame;
    SetBody(frame, "TIT2", {0x00, 'e', 'n', 'g', 0x00});
    std::string language;
    std::wstring description;
    EXPECT_EQ(frame.GetCommentInfo(language, description), kStatusFailure);
    CID3Frame empty;
    empty.Initialize("COMM");
    EXPECT_EQ(empty.GetCommentInfo(language, description), kStatusFailure);
}

TEST(ID3FrameTest, PrivateDataFollowsTheOwner) {
    CID3Frame frame;
    frame.Initialize("PRIV");
    Bytes const data = {0x00, 0x01, 0x02};
    EXPECT_EQ(frame.SetPrivateData("ow", data.data(), 3), kStatusOk);
    EXPECT_EQ(BodyOf(frame), (Bytes{'o', 'w', 0x00, 0x00, 0x01, 0x02}));
    Bytes out = {0x55};
    EXPECT_EQ(frame.GetPrivateData(out), kStatusOk);
    EXPECT_EQ(out, data);
    EXPECT_EQ(frame.IsPrivateURLMatch("ow"), kStatusOk);
    EXPECT_EQ(frame.IsPrivateURLMatch("o"), kStatusNothing);
    EXPECT_EQ(frame.IsPrivateURLMatch("own"), kStatusNothing);
}

TEST(ID3FrameTest, PrivateFrameWithoutDataFails) {
    Bytes out = {0x55};
    CID3Frame frame;
    EXPECT_EQ(frame.GetPrivateData(out), kStatusFailure);
    EXPECT_EQ(frame.IsPrivateURLMatch(""), kStatusFailure);
    SetBody(frame, "PRIV", {'o', 'w', 0x00});
    EXPECT_EQ(frame.GetPrivateData(out), kStatusFailure);
    SetBody(frame, "PRIV", {'o', 'w'});
    EXPECT_EQ(frame.GetPrivateData(out), kStatusFailure);
}

TEST(ID3FrameTest, PinsUnterminatedOwnerMatchesLongerNames) {
    CID3Frame frame;
    SetBody(frame, "PRIV", {'o', 'w'});
    EXPECT_EQ(frame.IsPrivateURLMatch("owner"), kStatusOk);
    EXPECT_EQ(frame.IsPrivateURLMatch("o"), kStatusNothing);
}

TEST(ID3FrameTest, UnsynchronizedBodyIsDecodedAndItsFlagCleared) {
    CID3Frame frame;
    ID3V2_3_FRAMEHEADER header = HeaderOf("APIC", 0x60, 0x0F);
    Bytes const body = {0xFF, 0x00, 0xE0};
    ASSERT_EQ(frame.SetData(&header, body.data(), 3), kStatusOk);
    EXPECT_EQ(BodyOf(frame), (Bytes{0xFF, 0xE0}));
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    frame.GetData(&header, &data, &size);
    EXPECT_EQ(header.m_nStatusFlags, 0x60);
    EXPECT_EQ(header.m_nFormatFlags, 0x0D);
}

TEST(ID3FrameTest, BodyWithoutTheFlagStaysAsItIs) {
    CID3Frame frame;
    SetBody(frame, "APIC", {0xFF, 0x00, 0xE0});
    EXPECT_EQ(BodyOf(frame), (Bytes{0xFF, 0x00, 0xE0}));
}

TEST(ID3FrameTest, SetDataMayTakeTheFramesOwnBytes) {
    CID3Frame frame;
    SetBody(frame, "APIC", {1, 2, 3, 4});
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(frame.GetData(&header, &data, &size), kStatusOk);
    ASSERT_EQ(frame.SetData(&header, data + 1, 2), kStatusOk);
    EXPECT_EQ(BodyOf(frame), (Bytes{2, 3}));
}

TEST(ID3FrameTest, PictureUnderSixteenBytesIsRefused) {
    CID3Frame frame;
    Bytes const body(15, 0x31);
    SetBody(frame, "APIC", body);
    EXPECT_EQ(frame.ConvertPicToApic(), kStatusFailure);
    EXPECT_EQ(BodyOf(frame), body);
}

TEST(ID3FrameTest, JpegPictureGrowsByEightBytes) {
    Bytes const rest = {'d', 0x00, 10, 11, 12, 13, 14, 15, 16, 17, 18};
    CID3Frame frame;
    SetBody(frame, "APIC", Concat({{0x00}, {'J', 'P', 'G'}, {0x03}, rest}));
    EXPECT_EQ(frame.ConvertPicToApic(), kStatusOk);
    Bytes const expected =
        Concat({{0x00}, {'i', 'm', 'a', 'g', 'e', '/', 'j', 'p', 'e', 'g', 0x00}, {0x03}, rest});
    EXPECT_EQ(BodyOf(frame), expected);
    EXPECT_EQ(expected.size(), 16U + 8U);
}

TEST(ID3FrameTest, EveryPictureFormatHasItsMimeType) {
    struct CCase {
        std::string m_sFormat;
        std::string m_sMimeType;
    };
    for (CCase const& c :
         {CCase{"png", "image/png"}, CCase{"PNG", "image/png"}, CCase{"jpg", "image/jpeg"},
          CCase{"JPG", "image/jpeg"}, CCase{"jpe", "image/jpeg"}, CCase{"JPE", "image/jpeg"},
          CCase{"bmp", "image/bmp"}, CCase{"BMP", "image/bmp"}, CCase{"gif", "image/gif"},
          CCase{"GIF", "image/gif"}, CCase{"tif", "image/tiff"}, CCase{"TIF", "image/tiff"},
          CCase{"Png", ""}, CCase{"-->", ""}}) {
        CID3Frame frame;
        SetBody(frame, "APIC",
                Concat({{0x01}, Bytes(c.m_sFormat.begin(), c.m_sFormat.end()), Bytes(12, 0x20)}));
        ASSERT_EQ(frame.ConvertPicToApic(), kStatusOk) << c.m_sFormat;
        EXPECT_EQ(BodyOf(frame), Concat({{0x01},
                                         Bytes(c.m_sMimeType.begin(), c.m_sMimeType.end()),
                                         {0x00},
                                         Bytes(12, 0x20)}))
            << c.m_sFormat;
    }
}
