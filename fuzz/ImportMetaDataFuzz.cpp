// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A file of any bytes is asked for the three pieces of metadata that programs show. The answer is
// that of the first source that says yes.

#include "FuzzFile.h"
#include "IDTag/ID3Reader.h"
#include "IDTag/ID3Tag.h"

namespace {

void CheckAnswer(CFile& file, char const* id) {
    CString all = L"before";
    std::int32_t const answer = CID3Reader::ImportMetaData(&file, id, all);
    CString value = L"before";
    bool const expected = CID3Reader::ImportID3v2MetaData(&file, id, value) == 1 ||
                          CID3Reader::ImportID3v1MetaData(&file, id, value) == 1 ||
                          CID3Reader::ImportVeltoMetaData(&file) == 1;
    FUZZ_REQUIRE(answer == (expected ? 1 : 0));
    FUZZ_REQUIRE(all == value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::string const path = folder / "song.mp3";
    WriteFuzzFile(path, data, size);
    CString const name = CString::FromPath(path);
    if (CID3Tag::AreFrameIdsKnown(name) != kStatusOk) {
        return 0;
    }
    CFile file(name, CFile::modeRead);
    for (char const* id : {"TIT2", "TPE1", "TBPM"}) {
        CheckAnswer(file, id);
    }
    return 0;
}
