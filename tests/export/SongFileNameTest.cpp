// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongFileName.h"

#include <gtest/gtest.h>

TEST(SongFileNameTest, ItIsTheSongsWithTheExtension) {
    std::set<std::string> taken;
    EXPECT_EQ(SongFileName("/m/a song.mp3", ".mid", taken), "a song.mid");
    EXPECT_EQ(taken, std::set<std::string>{"a song.mid"});
}

TEST(SongFileNameTest, ANameThatIsTakenGetsTheNextNumber) {
    std::set<std::string> taken = {"a.mid"};
    EXPECT_EQ(SongFileName("/m/a.mp3", ".mid", taken), "a (2).mid");
    EXPECT_EQ(SongFileName("/n/a.flac", ".mid", taken), "a (3).mid");
    EXPECT_EQ(SongFileName("/n/a.flac", ".txt", taken), "a.txt");
}
