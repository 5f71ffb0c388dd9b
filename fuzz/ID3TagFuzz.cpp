// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A file of any bytes is opened as a tag. Whatever it holds: the look-ahead keeps the assertion
// from firing, and so does the programs' rule; no frame holds more than the file, and texts are
// only as long as their bodies.

#include "FuzzFile.h"
#include "IDTag/ID3Tag.h"
#include "IDTag/MpegChain.h"
#include "IDTag/PosixFile.h"
#include "IDTag/TagStore.h"

#include <fcntl.h>

namespace {

/// What a converted picture may gain: ten characters of type and a 00 for three of format.
constexpr std::size_t kLargestGain = 8;

void CheckFrame(CID3Frame& frame, std::size_t fileBytes) {
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    FUZZ_REQUIRE(frame.GetData(&header, &data, &size) == kStatusOk);
    FUZZ_REQUIRE(size > 0 && size <= fileBytes + kLargestGain);
    FUZZ_REQUIRE(header.m_sId[0] != 0);
    std::wstring text;
    FUZZ_REQUIRE(frame.GetString(text) != kStatusOk || text.size() < size);
    std::string language;
    std::wstring description;
    FUZZ_REQUIRE(frame.GetCommentInfo(language, description) < 0 || language.size() <= 3);
}

void CheckTag(CID3Tag const& tag, std::size_t fileBytes) {
    std::uint64_t sum = 0;
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; tag.GetFrames().EnumItems(i, &frame); ++i) {
        CheckFrame(*frame, fileBytes);
        std::uint32_t length = 0;
        frame->GetTotalLength(&length);
        sum += length;
    }
    FUZZ_REQUIRE(sum == tag.GetPendingBodySize());
    for (char const* id : {"TIT2", "TPE1", "TBPM", "COMM"}) {
        CString value;
        (void)tag.GetString(id, value);
    }
    std::uint32_t size = 0;
    if (tag.GetPrivateBinaryData("owner", nullptr, &size) == kStatusOk) {
        FuzzBytes room(size);
        FUZZ_REQUIRE(tag.GetPrivateBinaryData("owner", room.data(), &size) == kStatusOk);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::string const path = folder / "song.mp3";
    WriteFuzzFile(path, data, size);
    CString const name = CString::FromPath(path);
    bool const isKnown = CID3Tag::AreFrameIdsKnown(name) == kStatusOk;
    for (bool const isProgram : {true, false}) {
        if (!isProgram && !isKnown) {
            break;
        }
        CTagRules rules;
        rules.m_bEveryId = isProgram;
        CID3Tag tag;
        tag.SetRules(rules);
        CStatus const status = tag.OpenFile(name);
        FUZZ_REQUIRE(status == kStatusOk || tag.GetFrames().GetCount() == 0);
        FUZZ_REQUIRE(status != kStatusOk || tag.GetTagSize() <= size);
        CheckTag(tag, size);
        CString text;
        CStatus const read = ReadTagText(name, "TBPM", text);
        FUZZ_REQUIRE(read != kStatusOk || text.GetLength() < size);
        CDescriptor const file(::open(path.c_str(), O_RDONLY));
        (void)HasMpegChain(file.Get(), tag.GetTagSize());
    }
    return 0;
}
