// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What the tags of a file of any bytes say: the same the second time, as UTF-8, and a tempo only
// where a number above 0 stands. Nothing else is made or opened.
//
// Input: the file.

#include "FuzzFile.h"
#include "base/Utf16.h"
#include "platform/AudioSetup.h"
#include "song/SongTags.h"

#include <mutex>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::string const path = folder / "song";
    static std::once_flag once;
    std::call_once(once, SetUpAudio); // as the programs' main does
    WriteFuzzFile(path, data, size);
    CString const name = CString::FromPath(path);
    CShownTags const first = ReadShownTags(name);
    CShownTags const second = ReadShownTags(name);
    for (auto const text : {&CShownTags::m_sTitle, &CShownTags::m_sArtist, &CShownTags::m_sAlbum,
                            &CShownTags::m_sKey, &CShownTags::m_sTempo}) {
        FUZZ_REQUIRE(first.*text == second.*text);
        FUZZ_REQUIRE(DecodeUtf8(first.*text).has_value());
    }
    FUZZ_REQUIRE(first.m_tempo == second.m_tempo);
    FUZZ_REQUIRE((first.m_tempo.m_worth == ETagTempo::None) == !(first.m_tempo.m_dBpm > 0.0));
    FUZZ_REQUIRE((first.m_tempo.m_worth == ETagTempo::None) == first.m_sTempo.empty());
    FUZZ_REQUIRE(folder.CountFiles() == 1);
    return 0;
}
