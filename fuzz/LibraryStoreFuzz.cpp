// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A tempo is written into a file of any bytes by TagLib, by the road that the programs take. Either
// the file is untouched, or its sound and its other items are what they were, the tempo is read
// back, and the same write once more changes nothing. No other file is left behind.
//
// Input: a byte that chooses the extension, the file.

#include "FuzzFile.h"
#include "platform/AudioHash.h"
#include "platform/AudioSetup.h"
#include "song/AudioKinds.h"
#include "song/LibraryStore.h"
#include "song/SongTags.h"

#include <array>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>

namespace {

constexpr std::array kNames = {"a.flac", "a.ogg",  "a.opus", "a.m4a",
                               "a.wav",  "a.aiff", "a.wv",   "a.ape"};

std::optional<CAudioHash> HashOf(std::string const& path) {
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::optional<CAudioHash> const hash = HashAudio(file);
    close(file);
    return hash;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::once_flag once;
    std::call_once(once, SetUpAudio); // as the programs' main does
    std::string const path = WriteNamedFile(folder, kNames, data, size);
    if (path.empty()) {
        return 0;
    }
    CString const name = CString::FromPath(path);
    CTagWish const wish{"128.50", ""};
    FuzzBytes const before = ReadFuzzFile(path);
    std::optional<CAudioHash> const sound = HashOf(path);
    CShownTags const tags = ReadShownTags(name);
    EWriteProblem const problem = StoreByLibrary(name, *FindAudioKind(name), wish, {});
    FuzzBytes const after = ReadFuzzFile(path);
    FUZZ_REQUIRE(folder.CountFiles() == 1);
    if (after != before) {
        FUZZ_REQUIRE(problem == EWriteProblem::None);
        FUZZ_REQUIRE(sound.has_value() && HashOf(path) == sound);
        CShownTags const now = ReadShownTags(name);
        FUZZ_REQUIRE(now.m_sTitle == tags.m_sTitle && now.m_sKey == tags.m_sKey);
        FUZZ_REQUIRE(StoreByLibrary(name, *FindAudioKind(name), wish, {}) == EWriteProblem::None);
        FUZZ_REQUIRE(ReadFuzzFile(path) == after);
    }
    std::filesystem::remove(path);
    return 0;
}
