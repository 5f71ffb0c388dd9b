// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ID3TagUpdateFixture.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// A tag with room for the tempo and with its title in front of a picture: another title's length
/// moves the picture, a change over many pages.
class ID3TagWideChangeTest : public CID3TagUpdateFixture {
protected:
    void SetUp() override { WriteBytes(m_sFile, Song("Title", 102)); }

    /// A title of n characters takes 10 + 1 + n bytes in Latin-1 and 10 + 1 + 2 + 2 n + 2 bytes as
    /// written; `room` is what is left of the tag.
    static TagBytes Song(char const* title, std::size_t room, bool isWritten = false) {
        TagBytes const text = isWritten ? WrittenText(title) : Latin1Text(title);
        return Joined({TagOf(3, Joined({Frame23("TIT2", text), kPicture, Zeros(room)})), kAudio});
    }

    CUpdate SetTitle() {
        CUpdate update;
        CID3Tag tag;
        (void)tag.OpenFile(CString::FromPath(m_sFile));
        (void)tag.SetString("TIT2", L"Other");
        update.m_nStatus = tag.UpdateFile(&update.m_bRewritten);
        update.m_eProblem = tag.GetWriteProblem();
        return update;
    }

    /// The title's frame grows from 16 to 25 bytes.
    void ExpectWritten(bool isNewFile) {
        ino_t const inode = LinkStat(m_sFile).st_ino;
        CUpdate const update = SetTitle();
        EXPECT_EQ(update.m_nStatus, kStatusOk);
        EXPECT_FALSE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), Song("Other", 102 - 9, true));
        EXPECT_EQ(LinkStat(m_sFile).st_ino != inode, isNewFile);
    }

    static inline TagBytes const kPicture = Frame23(
        "APIC", Joined({{0x00}, Ascii("image/png"), {0x00, 0x03, 0x00}, FakeAudio(50'000)}));
};

TEST_F(ID3TagWideChangeTest, GoesThroughANewFile) {
    ExpectWritten(true);
    EXPECT_FALSE(IsThere(m_sTemporary));
}

TEST_F(ID3TagWideChangeTest, ChangeWithinAPageStaysInTheFile) {
    ino_t const inode = LinkStat(m_sFile).st_ino;
    EXPECT_EQ(SetTempo(m_sFile).m_nStatus, kStatusOk);
    EXPECT_EQ(LinkStat(m_sFile).st_ino, inode);
}

TEST_F(ID3TagWideChangeTest, StaysInTheFileWhereThereCanBeNoOther) {
    std::filesystem::create_directory(m_sTemporary);
    ExpectWritten(false);
    EXPECT_TRUE(std::filesystem::is_directory(m_sTemporary));
}

TEST_F(ID3TagWideChangeTest, NeedsNoRoomOnTheDisk) {
    rlimit old = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    // The tag's 50 KB may be written, the new file's 650 KB may not.
    rlimit const limit = {100'000, old.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    ExpectWritten(false);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(IsThere(m_sTemporary));
}

TEST_F(ID3TagWideChangeTest, ShowsUnderAllNamesOfTheFile) {
    std::filesystem::create_hard_link(m_sFile, m_sOther);
    ExpectWritten(false);
    EXPECT_EQ(ReadBytes(m_sOther), Song("Other", 102 - 9, true));
}

TEST_F(ID3TagWideChangeTest, LosesToWhoeverBuildsThere) {
    WriteText(m_sTemporary, "half a file");
    int const other = ::open(m_sTemporary.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_EQ(SetTitle().m_eProblem, EWriteProblem::InUse);
    EXPECT_EQ(ReadBytes(m_sFile), Song("Title", 102));
    ::close(other);
}
