// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileIdentity.h"

#include "support/TempFolder.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FileIdentityTest : public testing::Test {
protected:
    FileIdentityTest() { WriteText(m_folder / "x", "0123456789"); }

    CTempFolder m_folder;
};

TEST_F(FileIdentityTest, APathAndADescriptorGiveTheSame) {
    int const file = open((m_folder / "x").c_str(), O_RDONLY);
    auto const opened = IdentityOf(file);
    (void)close(file);
    auto const named = IdentityAt(m_folder / "x");
    ASSERT_TRUE(opened && named);
    EXPECT_EQ(*opened, *named);
    EXPECT_EQ(named->m_nSize, 10);
}

TEST_F(FileIdentityTest, LinksAreFollowed) {
    std::filesystem::create_symlink("x", m_folder / "link");
    std::filesystem::create_hard_link(m_folder / "x", m_folder / "twin");
    EXPECT_EQ(IdentityAt(m_folder / "link"), IdentityAt(m_folder / "x"));
    EXPECT_EQ(IdentityAt(m_folder / "twin"), IdentityAt(m_folder / "x"));
}

TEST_F(FileIdentityTest, OtherFilesDiffer) {
    WriteText(m_folder / "y", "0123456789");
    auto const x = IdentityAt(m_folder / "x");
    auto const y = IdentityAt(m_folder / "y");
    ASSERT_TRUE(x && y);
    EXPECT_NE(*x, *y);
    EXPECT_FALSE(x->IsSameFile(*y));
}

TEST_F(FileIdentityTest, AChangeShowsAlthoughTheTimeOfWritingIsSetBack) {
    timespec const times[2] = {{1'000'000, 5}, {1'000'000, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, (m_folder / "x").c_str(), times, 0), 0);
    auto const before = IdentityAt(m_folder / "x");
    ASSERT_TRUE(before);
    EXPECT_EQ(before->m_nWrittenTime, 1'000'000'000'000'005);
    // The clock of file times may stand still for some milliseconds.
    for (auto after = before; after == before; after = IdentityAt(m_folder / "x")) {
        WriteText(m_folder / "x", "9876543210");
        ASSERT_EQ(utimensat(AT_FDCWD, (m_folder / "x").c_str(), times, 0), 0);
    }
    auto const after = IdentityAt(m_folder / "x");
    ASSERT_TRUE(after);
    EXPECT_TRUE(after->IsSameFile(*before));
    EXPECT_EQ(after->m_nWrittenTime, before->m_nWrittenTime);
    EXPECT_GT(after->m_nChangedTime, before->m_nChangedTime);
}

TEST_F(FileIdentityTest, WhatIsNotThereHasNone) {
    EXPECT_FALSE(IdentityAt(m_folder / "none"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(IdentityOf(-1));
}

TEST_F(FileIdentityTest, AWaitIsOverWhenTheClockHasGoneOn) {
    WriteText(m_folder / "x", "new");
    auto const changed = IdentityAt(m_folder / "x");
    ASSERT_TRUE(changed);
    WaitUntilChangesShow(*changed);
    timespec now = {};
    ASSERT_EQ(clock_gettime(CLOCK_REALTIME, &now), 0);
    // Ten milliseconds are a tick of the slowest kernel.
    EXPECT_GE(std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec,
              changed->m_nChangedTime + 10'000'000);
}

TEST_F(FileIdentityTest, OldAndFutureChangesAreNotWaitedFor) {
    auto const begin = std::chrono::steady_clock::now();
    CFileIdentity identity;
    identity.m_nChangedTime = 1'000'000'000'000'000'000; // the year 2001
    WaitUntilChangesShow(identity);
    identity.m_nChangedTime = 9'000'000'000'000'000'000; // the year 2255
    WaitUntilChangesShow(identity);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

} // namespace
