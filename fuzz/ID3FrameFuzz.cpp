// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Any header and body as a frame: every reading of the body, and every writing read back.

#include "FuzzFile.h"
#include "IDTag/ID3Frame.h"

#include <algorithm>
#include <cstring>

namespace {

FuzzBytes BodyOf(CID3Frame& frame) {
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    return frame.GetData(&header, &data, &size) == kStatusOk ? FuzzBytes(data, data + size)
                                                             : FuzzBytes();
}

/// The text as it must come back: up to its first 0, without FEFF, and with its terminator.
std::wstring Kept(std::wstring text) {
    text.resize(std::min(text.find(L'\0'), text.size()));
    std::erase(text, wchar_t{0xFEFF});
    return text + L'\0';
}

void CheckReading(CID3Frame& frame) {
    std::size_t const size = BodyOf(frame).size();
    std::wstring text;
    FUZZ_REQUIRE(frame.GetString(text) != kStatusOk || text.size() < size);
    std::string language;
    std::wstring description;
    FUZZ_REQUIRE(frame.GetCommentInfo(language, description) < 0 || language.size() <= 3);
    FuzzBytes data;
    FUZZ_REQUIRE(frame.GetPrivateData(data) != kStatusOk || data.size() < size);
    (void)frame.IsPrivateURLMatch("owner");
}

void CheckTextRoundTrip(CID3Frame& frame) {
    std::wstring text;
    if (frame.GetString(text) != kStatusOk) {
        return;
    }
    FUZZ_REQUIRE(frame.SetString(text.c_str()) == kStatusOk);
    std::wstring back;
    FUZZ_REQUIRE(frame.GetString(back) == kStatusOk);
    FUZZ_REQUIRE(back == Kept(text));
}

void CheckPrivateRoundTrip(CID3Frame& frame, std::uint8_t const* data, std::uint32_t size) {
    FUZZ_REQUIRE(frame.SetPrivateData("owner", data, size) == kStatusOk);
    FUZZ_REQUIRE(frame.IsPrivateURLMatch("owner") == kStatusOk);
    FuzzBytes back;
    FUZZ_REQUIRE((frame.GetPrivateData(back) == kStatusOk) == (size > 0));
    FUZZ_REQUIRE(back == FuzzBytes(data, data + size));
}

void CheckPicture(CID3Frame& frame) {
    FuzzBytes const before = BodyOf(frame);
    if (frame.ConvertPicToApic() != kStatusOk) {
        FUZZ_REQUIRE(before.size() < 16 && BodyOf(frame) == before);
        return;
    }
    FuzzBytes const after = BodyOf(frame);
    FUZZ_REQUIRE(before.size() >= 16 && after.size() + 2 >= before.size());
    FUZZ_REQUIRE(std::equal(before.begin() + 4, before.end(),
                            after.end() - static_cast<std::ptrdiff_t>(before.size() - 4)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < kFrameHeaderBytes) {
        return 0;
    }
    ID3V2_3_FRAMEHEADER header = {};
    std::memcpy(&header, data, kFrameHeaderBytes);
    std::uint8_t const* const body = data + kFrameHeaderBytes;
    auto const bodyBytes = static_cast<std::uint32_t>(size - kFrameHeaderBytes);
    CID3Frame frame;
    FUZZ_REQUIRE(frame.SetData(&header, body, bodyBytes) == kStatusOk);
    FUZZ_REQUIRE(BodyOf(frame).size() <= bodyBytes);
    CheckReading(frame);
    CheckTextRoundTrip(frame);
    CheckReading(frame);
    CheckPrivateRoundTrip(frame, body, bodyBytes);
    header.m_nFormatFlags = 0; // a flag would decode the picture once more
    FUZZ_REQUIRE(frame.SetData(&header, body, bodyBytes) == kStatusOk);
    CheckPicture(frame);
    return 0;
}
