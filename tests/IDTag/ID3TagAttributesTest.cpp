// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// What a song keeps when its tag is written: mode, owner, attributes, links, its name.

#include "ID3TagUpdateFixture.h"

#include "support/Unprivileged.h"

#include <fcntl.h>
#include <filesystem>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

std::string Attribute(std::string const& path, char const* name) {
    std::string value(1000, '\0');
    ssize_t const length = ::getxattr(path.c_str(), name, value.data(), value.size());
    return length < 0 ? "<none>" : value.substr(0, static_cast<std::size_t>(length));
}

/// The marks that `chattr` sets; none where the file system knows none.
int Marks(std::string const& path) {
    int marks = 0;
    int const file = ::open(path.c_str(), O_RDONLY);
    (void)::ioctl(file, FS_IOC_GETFLAGS, &marks);
    ::close(file);
    return marks;
}

bool SetMarks(std::string const& path, int marks) {
    int const file = ::open(path.c_str(), O_RDONLY);
    bool const isSet = ::ioctl(file, FS_IOC_SETFLAGS, &marks) == 0;
    ::close(file);
    return isSet;
}

} // namespace

using ID3TagAttributesTest = CID3TagUpdateFixture;

TEST_F(ID3TagAttributesTest, ModeAndAttributesSurviveTheSwap) {
    ASSERT_EQ(::chmod(m_sFile.c_str(), 0640), 0);
    if (::setxattr(m_sFile.c_str(), "user.mood", "calm", 4, 0) != 0) {
        GTEST_SKIP() << "the file system has no extended attributes";
    }
    // What lies under the temporary name from before leaves nothing of itself.
    WriteText(m_sTemporary, "old");
    ::setxattr(m_sTemporary.c_str(), "user.stale", "x", 1, 0);
    ::chmod(m_sTemporary.c_str(), 0666);
    ExpectSwapped();
    EXPECT_EQ(LinkStat(m_sFile).st_mode & 07777U, 0640U);
    EXPECT_EQ(Attribute(m_sFile, "user.mood"), "calm");
    EXPECT_EQ(Attribute(m_sFile, "user.stale"), "<none>");
}

TEST_F(ID3TagAttributesTest, OwnerSurvivesTheSwap) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can give files away";
    }
    ASSERT_EQ(::chown(m_sFile.c_str(), 12345, 23456), 0);
    ASSERT_EQ(::chmod(m_sFile.c_str(), 0460), 0);
    ExpectSwapped();
    EXPECT_EQ(LinkStat(m_sFile).st_uid, 12345U);
    EXPECT_EQ(LinkStat(m_sFile).st_gid, 23456U);
    EXPECT_EQ(LinkStat(m_sFile).st_mode & 07777U, 0460U);
}

TEST_F(ID3TagAttributesTest, AnotherUsersFileKeepsWhatItsNewOwnerMayHave) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can set this up";
    }
    // The song belongs to user and group 12345; everybody may write it and its folder.
    ASSERT_EQ(::chmod(m_folder.Path().c_str(), 0777), 0);
    ASSERT_EQ(::chown(m_sFile.c_str(), 12345, 12345), 0);
    ASSERT_EQ(::chmod(m_sFile.c_str(), 06772), 0);
    ASSERT_EQ(::setegid(65534), 0);
    {
        CUnprivileged const user({});
        // Unreadable for this user, hence out of reach.
        EXPECT_EQ(SetTempo(m_sFile).m_nStatus, kStatusFailure);
    }
    ASSERT_EQ(::chmod(m_sFile.c_str(), 06776), 0);
    {
        CUnprivileged const user({});
        ExpectSwapped();
    }
    ASSERT_EQ(::setegid(0), 0);
    // It belongs to the writer now: no set-id bits, and the strange group gets what others get.
    EXPECT_EQ(LinkStat(m_sFile).st_uid, 65534U);
    EXPECT_EQ(LinkStat(m_sFile).st_gid, 65534U);
    EXPECT_EQ(LinkStat(m_sFile).st_mode & 07777U, 0766U);
}

TEST_F(ID3TagAttributesTest, FoldersDefaultAccessListIsNotTakenOver) {
    // Standard: acl(5) in its attribute form: version 2; entries of tag, permissions and id:
    // owner rwx, user 12345 rw, group rx, mask rwx, others nothing.
    unsigned char const list[] = {
        0x02, 0,    0,    0,                            // version
        0x01, 0x00, 0x07, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, // owner
        0x02, 0x00, 0x06, 0x00, 0x39, 0x30, 0x00, 0x00, // user 12345
        0x04, 0x00, 0x05, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, // group
        0x10, 0x00, 0x07, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, // mask
        0x20, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, // others
    };
    if (::setxattr(m_folder.Path().c_str(), "system.posix_acl_default", list, sizeof list, 0) !=
        0) {
        GTEST_SKIP() << "the file system has no access lists";
    }
    ASSERT_EQ(::chmod(m_sFile.c_str(), 0604), 0);
    ExpectSwapped();
    EXPECT_EQ(LinkStat(m_sFile).st_mode & 07777U, 0604U);
    EXPECT_EQ(Attribute(m_sFile, "system.posix_acl_access"), "<none>");
    // The song's own list goes along.
    WriteBytes(m_sFile, kOld);
    ASSERT_EQ(::setxattr(m_sFile.c_str(), "system.posix_acl_access", list, sizeof list, 0), 0);
    std::string const before = Attribute(m_sFile, "system.posix_acl_access");
    mode_t const mode = LinkStat(m_sFile).st_mode;
    ExpectSwapped();
    EXPECT_EQ(Attribute(m_sFile, "system.posix_acl_access"), before);
    EXPECT_EQ(LinkStat(m_sFile).st_mode, mode);
}

TEST_F(ID3TagAttributesTest, SymbolicLinkStaysOneAndItsTargetIsWritten) {
    std::filesystem::create_directory(m_folder / "store");
    std::filesystem::rename(m_sFile, m_folder / "store/data");
    std::filesystem::create_symlink("store/data", m_folder / "middle.mp3");
    std::filesystem::create_symlink("middle.mp3", m_sFile);
    CUpdate const update = SetTempo(m_sFile);
    EXPECT_EQ(update.m_nStatus, kStatusOk);
    EXPECT_TRUE(S_ISLNK(LinkStat(m_sFile).st_mode));
    EXPECT_TRUE(S_ISLNK(LinkStat(m_folder / "middle.mp3").st_mode));
    EXPECT_TRUE(S_ISREG(LinkStat(m_folder / "store/data").st_mode));
    EXPECT_EQ(ReadBytes(m_folder / "store/data"), kNew);
    EXPECT_FALSE(IsThere(m_folder / "store/data.MP~"));
    EXPECT_FALSE(IsThere(m_sTemporary));
    // Again, now in place.
    EXPECT_EQ(SetTempo(m_sFile, L"64").m_nStatus, kStatusOk);
    EXPECT_TRUE(S_ISLNK(LinkStat(m_sFile).st_mode));
}

TEST_F(ID3TagAttributesTest, HardLinkedSongKeepsItsOldBytesUnderTheOtherName) {
    std::filesystem::create_hard_link(m_sFile, m_sOther);
    ExpectSwapped();
    EXPECT_EQ(ReadBytes(m_sOther), kOld);
    // In place both names show the new tag.
    WriteBytes(m_sFile, kRoomy);
    std::filesystem::remove(m_sOther);
    std::filesystem::create_hard_link(m_sFile, m_sOther);
    EXPECT_EQ(SetTempo(m_sFile).m_nStatus, kStatusOk);
    EXPECT_EQ(ReadBytes(m_sOther), kRoomyNew);
}

TEST_F(ID3TagAttributesTest, NamesOfAnyBytesAreWritten) {
    for (char const* name :
         {"\xF0\x9F\x98\x80.mp3", "caf\xE9.mp3", "\xED\xA0\x80.mp3", "a\nb.mp3"}) {
        std::string const path = m_folder / name;
        WriteBytes(path, kOld);
        EXPECT_EQ(SetTempo(path).m_nStatus, kStatusOk) << name;
        EXPECT_EQ(ReadBytes(path), kNew);
    }
}

TEST_F(ID3TagAttributesTest, RelativePathsAreWritten) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    EXPECT_EQ(SetTempo("song.mp3").m_nStatus, kStatusOk);
    std::filesystem::current_path(before);
    EXPECT_EQ(ReadBytes(m_sFile), kNew);
}

TEST_F(ID3TagAttributesTest, MarksSurviveTheSwap) {
    int const before = Marks(m_sFile);
    if (!SetMarks(m_sFile, before | FS_NODUMP_FL | FS_NOATIME_FL)) {
        GTEST_SKIP() << "the file system knows no such marks";
    }
    ExpectSwapped();
    EXPECT_EQ(Marks(m_sFile), before | FS_NODUMP_FL | FS_NOATIME_FL);
}

TEST_F(ID3TagAttributesTest, FileOrFolderThatOnlyGrowsIsLeftAlone) {
    for (std::string const& path : {m_sFile, m_folder.Path()}) {
        int const before = Marks(path);
        if (!SetMarks(path, before | FS_APPEND_FL)) {
            GTEST_SKIP() << "only the superuser can set this up, on some file systems";
        }
        CUpdate const update = SetTempo(m_sFile);
        ASSERT_TRUE(SetMarks(path, before));
        EXPECT_EQ(update.m_eProblem, EWriteProblem::MayNotReplace);
        EXPECT_EQ(ReadBytes(m_sFile), kOld);
        EXPECT_FALSE(IsThere(m_sTemporary)) << path;
    }
}
