// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// One text is written into a file of any bytes, through the library's door or the programs'. Either
// the file is untouched, or it has the same frames as before but for that text, and the same audio.
//
// Input: a byte that chooses the frame (1), the door (2) and whether MPEG frames are asked for (4);
// a byte that counts the text's characters, the characters, the file.

#include "FuzzFile.h"
#include "IDTag/ID3Reader.h"
#include "IDTag/ID3Tag.h"
#include "IDTag/TagStore.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint8_t kDiscardWhenAltered = 0x40; // Standard: ID3v2.3.0, section 3.3.1.
constexpr std::uint8_t kEncodedForms = 0x4D;       // Standard: ID3v2.4.0 structure, section 4.1.2.

constexpr std::uint8_t kProgram = 2; // the first byte's bits
constexpr std::uint8_t kNeedsFrames = 4;

/// A frame as far as it must survive.
struct CKeptFrame {
    std::string m_sId;
    std::uint8_t m_nStatusFlags = 0;
    std::uint8_t m_nFormatFlags = 0;
    FuzzBytes m_vBody;
    bool operator==(CKeptFrame const&) const = default;
};

struct CSong {
    CStatus m_nStatus = kStatusFailure;
    bool m_bUnreached = false;
    std::vector<CKeptFrame> m_vFrames;
    FuzzBytes m_vBytes;
    std::size_t m_nTagBytes = 0;
};

CSong ReadSong(std::string const& path, bool isProgram) {
    CSong song;
    CTagRules rules;
    rules.m_bEveryId = isProgram;
    CID3Tag tag;
    tag.SetRules(rules);
    song.m_nStatus = tag.OpenFile(CString::FromPath(path));
    song.m_bUnreached = tag.HasUnreachedData();
    song.m_vBytes = ReadFuzzFile(path);
    song.m_nTagBytes = song.m_nStatus == kStatusOk ? tag.GetTagSize() : 0;
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; tag.GetFrames().EnumItems(i, &frame); ++i) {
        ID3V2_3_FRAMEHEADER header = {};
        std::uint8_t* data = nullptr;
        std::uint32_t size = 0;
        FUZZ_REQUIRE(frame->GetData(&header, &data, &size) == kStatusOk);
        song.m_vFrames.push_back({std::string(header.m_sId, kFrameIdBytes), header.m_nStatusFlags,
                                  header.m_nFormatFlags, FuzzBytes(data, data + size)});
    }
    return song;
}

/// The frames that must stand in the file afterwards.
std::vector<CKeptFrame> Expected(std::vector<CKeptFrame> frames, char const* id,
                                 std::wstring const& text, bool isProgram) {
    CID3Frame written;
    written.Initialize(id);
    written.SetString(text.c_str());
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    (void)written.GetData(&header, &data, &size);
    FuzzBytes const body(data, data + size);
    auto const found = std::ranges::find(frames, std::string(id), &CKeptFrame::m_sId);
    if (found == frames.end()) {
        frames.push_back({id, 0, 0, body});
    } else {
        found->m_vBody = body;
    }
    std::erase_if(frames, [isProgram](CKeptFrame const& frame) {
        return !isProgram && (frame.m_nStatusFlags & kDiscardWhenAltered) != 0;
    });
    return frames;
}

void CheckRewritten(CSong const& before, CSong const& after, char const* id,
                    std::wstring const& text, bool isProgram) {
    FUZZ_REQUIRE(!before.m_bUnreached && !after.m_bUnreached);
    FUZZ_REQUIRE(before.m_nStatus >= 0 && after.m_nStatus == kStatusOk);
    bool const isEncoded = before.m_vBytes.size() > 3 && before.m_vBytes[3] == 4 &&
                           std::ranges::any_of(before.m_vFrames, [](CKeptFrame const& frame) {
                               return (frame.m_nFormatFlags & kEncodedForms) != 0;
                           });
    FUZZ_REQUIRE(!isProgram || before.m_nStatus != kStatusOk || !isEncoded);
    FUZZ_REQUIRE(after.m_vBytes[3] == 3 && after.m_vBytes[5] == 0);
    FUZZ_REQUIRE(after.m_vFrames == Expected(before.m_vFrames, id, text, isProgram));
    FUZZ_REQUIRE(
        std::equal(before.m_vBytes.begin() + static_cast<std::ptrdiff_t>(before.m_nTagBytes),
                   before.m_vBytes.end(),
                   after.m_vBytes.begin() + static_cast<std::ptrdiff_t>(after.m_nTagBytes),
                   after.m_vBytes.end()));
}

/// Writes through one of the doors. Returns: why not.
EWriteProblem Write(CString const& name, char const* id, std::wstring const& text,
                    std::uint8_t choice) {
    EWriteProblem problem = EWriteProblem::None;
    if ((choice & kProgram) == 0) {
        FUZZ_REQUIRE(CID3Reader::SetTagString(name, id, text.c_str(), &problem) == 1);
        return problem;
    }
    CTagStoreOptions options;
    options.m_bNeedsMpegChain = (choice & kNeedsFrames) != 0;
    return StoreTagText(name, id, text.c_str(), options);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::string const path = folder / "song.mp3";
    if (size < 2 || size - 2 < data[1]) {
        return 0;
    }
    bool const isProgram = (data[0] & kProgram) != 0;
    char const* const id = data[0] % 2 == 0 ? "TBPM" : "TIT2";
    std::wstring text(data + 2, data + 2 + data[1]);
    text.resize(std::min(text.find(L'\0'), text.size()));
    WriteFuzzFile(path, data + 2 + data[1], size - 2 - data[1]);
    CString const name = CString::FromPath(path);
    if (!isProgram && CID3Tag::AreFrameIdsKnown(name) != kStatusOk) {
        return 0;
    }
    CSong const before = ReadSong(path, isProgram);
    EWriteProblem const problem = Write(name, id, text, data[0]);
    CSong const after = ReadSong(path, isProgram);
    FUZZ_REQUIRE(folder.CountFiles() == 1);
    if (after.m_vBytes != before.m_vBytes) {
        FUZZ_REQUIRE(problem == EWriteProblem::None);
        CheckRewritten(before, after, id, text, isProgram);
        // The same once more changes nothing.
        FUZZ_REQUIRE(Write(name, id, text, data[0]) == EWriteProblem::None);
        FUZZ_REQUIRE(ReadFuzzFile(path) == after.m_vBytes);
    }
    return 0;
}
