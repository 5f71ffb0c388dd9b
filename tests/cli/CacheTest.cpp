// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "CommandTest.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>

// The program from outside: what it remembers of songs.

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CacheTest : public CCommandTest {
protected:
    /// A store of this test's own.
    CacheTest() { (void)::setenv("XDG_CACHE_HOME", (m_cache / "c").c_str(), 1); }

    std::string Rows(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"analyze", "--format", "jsonl", "-q"});
        arguments.push_back("songs");
        return Tactus(arguments).m_sOut;
    }

    /// Songs of several kinds: whole, tagged, cut off, and none.
    void WriteSongs() {
        std::filesystem::create_directory(m_folder / "songs");
        WriteClip("songs/a.wav");
        WriteMp3("songs/b.mp3");
        WriteTagged("songs/c.mp3", "133.5");
        std::string const mp3 = ReadText(m_folder / "songs/b.mp3");
        WriteText(m_folder / "songs/d.mp3", mp3.substr(0, mp3.size() / 2));
        WriteText(m_folder / "songs/e.mp3", "no song");
        Ffmpeg(
            {"-i", m_folder / "source.wav", "-metadata", "title=Song", m_folder / "songs/f.flac"});
        // Files that have just been written are not kept: a change might not show.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }

    std::string Info() { return Tactus({"cache", "info"}).m_sOut; }

    CTempFolder m_cache;
};

TEST_F(CacheTest, AnswersAreTheSameWithAndWithoutIt) {
    WriteSongs();
    std::string const without = Rows({"--no-cache"});
    EXPECT_FALSE(std::filesystem::exists(m_cache / "c"));
    EXPECT_EQ(Rows({}), without);
    EXPECT_THAT(Info(), HasSubstr("\nsongs: 6\n")); // of the one that is none, its tags
    EXPECT_EQ(Rows({}), without);
    std::string const forced = Rows({"--no-cache", "--force"});
    EXPECT_EQ(Rows({"--force"}), forced);
    EXPECT_EQ(Rows({"--force"}), forced);
}

TEST_F(CacheTest, AnswersAreTheSameAfterAWrite) {
    WriteSongs();
    (void)Rows({});
    (void)Rows({"--write", "--short"});
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Rows({}), Rows({"--no-cache"}));
    EXPECT_EQ(Rows({"--force"}), Rows({"--no-cache", "--force"}));
}

TEST_F(CacheTest, AChangedFileIsReadAgain) {
    std::filesystem::create_directory(m_folder / "songs");
    WriteTagged("songs/a.mp3", "100");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_THAT(Rows({}), HasSubstr("\"tempo\":100.00"));
    // Of the same size, and with the old time.
    auto const time = std::filesystem::last_write_time(m_folder / "songs/a.mp3");
    WriteTagged("songs/a.mp3", "101");
    std::filesystem::last_write_time(m_folder / "songs/a.mp3", time);
    EXPECT_THAT(Rows({}), HasSubstr("\"tempo\":101.00"));
}

TEST_F(CacheTest, ClearRemovesEverything) {
    WriteSongs();
    (void)Rows({});
    CProcessResult const cleared = Tactus({"cache", "clear"});
    EXPECT_EQ(cleared.m_nExit, 0);
    EXPECT_EQ(cleared.m_sErr, "tactus: 6 songs removed\n");
    EXPECT_THAT(Info(), HasSubstr("\nsongs: 0\n"));
    EXPECT_EQ(Tactus({"cache", "prune"}).m_sErr, "tactus: 0 songs removed\n");
    EXPECT_EQ(Tactus({"cache"}).m_nExit, 2);
}

TEST_F(CacheTest, ADamagedStoreIsToldInOneLine) {
    WriteSongs();
    std::string const without = Rows({"--no-cache"});
    std::filesystem::create_directories(m_cache / "c/tactus");
    WriteText(m_cache / "c/tactus/songs.sqlite", std::string(5000, '?'));
    CProcessResult const run = Tactus({"analyze", "--format", "jsonl", "-q", "songs/c.mp3"});
    EXPECT_EQ(run.m_nExit, 0);
    EXPECT_EQ(run.m_sErr,
              "tactus: " + (m_cache / "c/tactus/songs.sqlite") +
                  ": the store of results was damaged and is put aside; a new one is begun\n");
    EXPECT_EQ(Rows({}), without);
}

TEST_F(CacheTest, NothingIsKeptWhereNothingCanBe) {
    WriteSongs();
    WriteText(m_cache / "c", "no folder");
    CProcessResult const run = Tactus({"analyze", "-q", "songs/c.mp3"});
    EXPECT_EQ(run.m_nExit, 0);
    EXPECT_EQ(run.m_sErr, "tactus: " + (m_cache / "c/tactus/songs.sqlite") +
                              ": the store of results can't be opened or made\n");
    (void)::setenv("TACTUS_NO_RECORDS", "1", 1);
    EXPECT_EQ(Tactus({"analyze", "-q", "songs/c.mp3"}).m_sErr, "");
    EXPECT_THAT(Tactus({"cache", "info"}).m_sErr, StartsWith("tactus: nothing is remembered"));
    (void)::unsetenv("TACTUS_NO_RECORDS");
}

} // namespace
