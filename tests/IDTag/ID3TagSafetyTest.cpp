// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Tag.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"
#include "support/Unprivileged.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace {

TagBytes const kTitle = Frame23("TIT2", Latin1Text("Title"));
TagBytes const kTempo = Frame23("TBPM", WrittenText("128"));
TagBytes const kAudio = FakeAudio(600'000);
TagBytes const kOld = Joined({TagOf(3, kTitle), kAudio});
TagBytes const kNew = Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(4096)})), kAudio});
TagBytes const kRoomy = Joined({TagOf(3, Joined({kTitle, Zeros(21)})), kAudio});
TagBytes const kRoomyNew = Joined({TagOf(3, Joined({kTitle, kTempo})), kAudio});

/// What one update came to.
struct CUpdate {
    CStatus m_nStatus = kStatusFailure;
    EWriteProblem m_eProblem = EWriteProblem::None;
    bool m_bRewritten = false;
};

CUpdate SetTempo(std::string const& path, wchar_t const* text = L"128") {
    CUpdate update;
    CID3Tag tag;
    (void)tag.OpenFile(CString::FromPath(path));
    (void)tag.SetString("TBPM", text);
    update.m_nStatus = tag.UpdateFile(&update.m_bRewritten);
    update.m_eProblem = tag.GetWriteProblem();
    return update;
}

struct stat LinkStat(std::string const& path) {
    struct stat info = {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
}

bool IsThere(std::string const& path) {
    struct stat info = {};
    return ::lstat(path.c_str(), &info) == 0;
}

std::string Attribute(std::string const& path, char const* name) {
    std::string value(1000, '\0');
    ssize_t const length = ::getxattr(path.c_str(), name, value.data(), value.size());
    return length < 0 ? "<none>" : value.substr(0, static_cast<std::size_t>(length));
}

} // namespace

class ID3TagSafetyTest : public testing::Test {
protected:
    void SetUp() override { WriteBytes(m_sFile, kOld); }

    void ExpectSwapped() {
        CUpdate const update = SetTempo(m_sFile);
        EXPECT_EQ(update.m_nStatus, kStatusOk);
        EXPECT_TRUE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kNew);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }

    void ExpectRefused(EWriteProblem problem) {
        CUpdate const update = SetTempo(m_sFile);
        EXPECT_EQ(update.m_nStatus, kStatusFailure);
        EXPECT_EQ(update.m_eProblem, problem);
        EXPECT_FALSE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kOld);
    }

    CTempFolder m_folder;
    std::string const m_sFile = m_folder / "song.mp3";
    std::string const m_sTemporary = m_folder / "song.MP~";
    std::string const m_sOther = m_folder / "other";
};

TEST_F(ID3TagSafetyTest, LeftOverTemporaryFileIsStartedAfresh) {
    WriteBytes(m_sTemporary, FakeAudio(2'000'000)); // longer than the new file
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, LinkUnderTheTemporaryNameIsNotWrittenThrough) {
    WriteText(m_sOther, "precious");
    std::filesystem::create_symlink(m_sOther, m_sTemporary);
    ExpectSwapped();
    EXPECT_EQ(ReadText(m_sOther), "precious");
    std::filesystem::create_symlink(m_folder / "nowhere", m_sTemporary);
    EXPECT_EQ(SetTempo(m_sFile, L"a tempo that needs more room than there is"
                                L"................................................................")
                  .m_nStatus,
              kStatusOk);
    EXPECT_FALSE(IsThere(m_folder / "nowhere"));
}

TEST_F(ID3TagSafetyTest, HardLinkUnderTheTemporaryNameIsNotWrittenThrough) {
    WriteText(m_sOther, "precious");
    std::filesystem::create_hard_link(m_sOther, m_sTemporary);
    ExpectSwapped();
    EXPECT_EQ(ReadText(m_sOther), "precious");
}

TEST_F(ID3TagSafetyTest, SongItselfUnderTheTemporaryNameIsNotWrittenThrough) {
    std::filesystem::create_hard_link(m_sFile, m_sTemporary);
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, SymbolicLinkToTheSongUnderTheTemporaryNameIsNoDanger) {
    std::filesystem::create_symlink(m_sFile, m_sTemporary);
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, FifoAndSocketUnderTheTemporaryNameAreRemoved) {
    ASSERT_EQ(::mkfifo(m_sTemporary.c_str(), 0600), 0);
    ExpectSwapped();
    WriteBytes(m_sFile, kOld);
    int const listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(m_sTemporary.size(), sizeof address.sun_path);
    m_sTemporary.copy(address.sun_path, m_sTemporary.size());
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    ExpectSwapped();
    ::close(listener);
}

TEST_F(ID3TagSafetyTest, FolderUnderTheTemporaryNameFailsTheWrite) {
    std::filesystem::create_directory(m_sTemporary);
    ExpectRefused(EWriteProblem::NoTemporaryFile);
    EXPECT_TRUE(std::filesystem::is_directory(m_sTemporary));
}

TEST_F(ID3TagSafetyTest, SomebodyElsesTemporaryFileIsLeftAlone) {
    WriteText(m_sTemporary, "half a file");
    int const other = ::open(m_sTemporary.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    ExpectRefused(EWriteProblem::InUse);
    EXPECT_EQ(ReadText(m_sTemporary), "half a file");
    ::close(other);
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, LockedSongIsLeftAlone) {
    int const other = ::open(m_sFile.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    ExpectRefused(EWriteProblem::InUse);
    EXPECT_FALSE(IsThere(m_sTemporary));
    ::close(other);
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, FileChangedSinceItWasReadIsLeftAlone) {
    for (bool const replaced : {false, true}) {
        WriteBytes(m_sFile, kOld);
        CID3Tag tag;
        ASSERT_EQ(tag.OpenFile(CString::FromPath(m_sFile)), kStatusOk);
        (void)tag.SetString("TBPM", L"128");
        TagBytes const changed = Joined({TagOf(3, Frame23("TIT2", Latin1Text("Tit1e"))), kAudio});
        if (replaced) {
            WriteBytes(m_sOther, changed);
            std::filesystem::rename(m_sOther, m_sFile);
        } else {
            WriteBytes(m_sFile, changed);
        }
        bool rewritten = false;
        EXPECT_EQ(tag.UpdateFile(&rewritten), kStatusFailure);
        EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::Changed);
        EXPECT_EQ(ReadBytes(m_sFile), changed);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }
}

TEST_F(ID3TagSafetyTest, FileThatGotATagSinceIsLeftAlone) {
    WriteBytes(m_sFile, kAudio);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(CString::FromPath(m_sFile)), kStatusNothing);
    (void)tag.SetString("TBPM", L"128");
    WriteBytes(m_sFile, kOld);
    bool rewritten = false;
    EXPECT_EQ(tag.UpdateFile(&rewritten), kStatusFailure);
    EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::Changed);
    EXPECT_EQ(ReadBytes(m_sFile), kOld);
}

TEST_F(ID3TagSafetyTest, AudioCutShortSinceStopsAnUpdateInPlaceOnlyAtTheTag) {
    WriteBytes(m_sFile, kRoomy);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(CString::FromPath(m_sFile)), kStatusOk);
    (void)tag.SetString("TBPM", L"128");
    std::filesystem::resize_file(m_sFile, 20);
    bool rewritten = false;
    EXPECT_EQ(tag.UpdateFile(&rewritten), kStatusFailure);
    EXPECT_EQ(std::filesystem::file_size(m_sFile), 20U);
}

TEST_F(ID3TagSafetyTest, FullDiskLeavesTheSongAsItWas) {
    // The limit on a file's length stands for the disk: a write past it falls short.
    rlimit old = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    for (rlim_t const room : {rlim_t{0}, rlim_t{100}, rlim_t{4096 + 300'000}}) {
        rlimit const limit = {room, old.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        CUpdate const update = SetTempo(m_sFile);
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
        EXPECT_EQ(update.m_nStatus, kStatusFailure);
        EXPECT_EQ(update.m_eProblem, EWriteProblem::FileTooLarge);
        EXPECT_FALSE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kOld);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }
    std::signal(SIGXFSZ, handler);
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, ModeAndAttributesSurviveTheSwap) {
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

TEST_F(ID3TagSafetyTest, OwnerSurvivesTheSwap) {
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

TEST_F(ID3TagSafetyTest, AnotherUsersFileKeepsWhatItsNewOwnerMayHave) {
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

TEST_F(ID3TagSafetyTest, AnotherUsersTemporaryFileIsReplacedNotWritten) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can set this up";
    }
    WriteText(m_sTemporary, "theirs");
    ASSERT_EQ(::chown(m_sTemporary.c_str(), 12345, 12345), 0);
    int const theirs = ::open(m_sTemporary.c_str(), O_RDWR);
    ExpectSwapped();
    struct stat info = {};
    ASSERT_EQ(::fstat(theirs, &info), 0);
    EXPECT_EQ(info.st_nlink, 0U);
    EXPECT_EQ(info.st_size, 6);
    ::close(theirs);
}

TEST_F(ID3TagSafetyTest, FoldersDefaultAccessListIsNotTakenOver) {
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

TEST_F(ID3TagSafetyTest, SymbolicLinkStaysOneAndItsTargetIsWritten) {
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

TEST_F(ID3TagSafetyTest, HardLinkedSongKeepsItsOldBytesUnderTheOtherName) {
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

TEST_F(ID3TagSafetyTest, SongNamedLikeATemporaryFileIsRefused) {
    for (char const* name : {"track.MP~", "track.mp~"}) {
        std::string const path = m_folder / name;
        WriteBytes(path, kOld);
        EXPECT_EQ(SetTempo(path).m_eProblem, EWriteProblem::NoTemporaryFile);
        EXPECT_EQ(ReadBytes(path), kOld);
        std::filesystem::remove(path);
    }
}

TEST_F(ID3TagSafetyTest, FolderWithoutPermissionLeavesTheSongAlone) {
    CUnprivileged const user({m_folder.Path(), m_sFile});
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0500));
    ExpectRefused(EWriteProblem::NoTemporaryFile);
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0700));
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, NamesOfAnyBytesAreWritten) {
    for (char const* name :
         {"\xF0\x9F\x98\x80.mp3", "caf\xE9.mp3", "\xED\xA0\x80.mp3", "a\nb.mp3"}) {
        std::string const path = m_folder / name;
        WriteBytes(path, kOld);
        EXPECT_EQ(SetTempo(path).m_nStatus, kStatusOk) << name;
        EXPECT_EQ(ReadBytes(path), kNew);
    }
}

TEST_F(ID3TagSafetyTest, RelativePathsAreWritten) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    EXPECT_EQ(SetTempo("song.mp3").m_nStatus, kStatusOk);
    std::filesystem::current_path(before);
    EXPECT_EQ(ReadBytes(m_sFile), kNew);
}

TEST_F(ID3TagSafetyTest, NeighboursThatShareTheTemporaryNameAreBothWritten) {
    std::string const neighbour = m_folder / "song.MP3";
    TagBytes const audio = FakeAudio(1000);
    WriteBytes(neighbour, audio);
    ExpectSwapped();
    EXPECT_EQ(SetTempo(neighbour).m_nStatus, kStatusOk);
    EXPECT_EQ(ReadBytes(neighbour), Joined({TagOf(3, Joined({kTempo, Zeros(4096)})), audio}));
    EXPECT_EQ(ReadBytes(m_sFile), kNew);
}

TEST_F(ID3TagSafetyTest, ManyWritersNeverLoseAFile) {
    // Four writers each on two songs that share the temporary name. Texts of all lengths make some
    // updates go in place and some build a new file. Whoever loses a lock fails and tries again;
    // nobody loses a byte.
    std::string const neighbour = m_folder / "song.MP3";
    TagBytes const otherAudio = FakeAudio(300'001);
    WriteBytes(neighbour, otherAudio);
    auto const work = [](std::string const& path, std::size_t seed) {
        for (std::size_t done = 0; done < 10;) {
            std::wstring const text(1 + (done * 701 + seed) % 9000, L'5');
            CUpdate const update = SetTempo(path, text.c_str());
            if (update.m_nStatus != kStatusFailure) {
                ++done;
                continue;
            }
            ASSERT_TRUE(update.m_eProblem == EWriteProblem::InUse ||
                        update.m_eProblem == EWriteProblem::Changed ||
                        update.m_eProblem == EWriteProblem::TagUnreadable)
                << static_cast<int>(update.m_eProblem);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    std::vector<std::thread> writers;
    for (std::size_t i = 0; i < 8; ++i) {
        writers.emplace_back(work, i % 2 == 0 ? m_sFile : neighbour, i * 1111);
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    auto const audioOf = [](std::string const& path) {
        CID3Tag tag;
        EXPECT_EQ(tag.OpenFile(CString::FromPath(path)), kStatusOk) << path;
        EXPECT_FALSE(tag.HasUnreachedData());
        CString text;
        EXPECT_EQ(tag.GetString("TBPM", text), kStatusOk) << path;
        TagBytes bytes = ReadBytes(path);
        bytes.erase(bytes.begin(), bytes.begin() + tag.GetTagSize());
        return bytes;
    };
    EXPECT_EQ(audioOf(m_sFile), kAudio);
    EXPECT_EQ(audioOf(neighbour), otherAudio);
    EXPECT_FALSE(IsThere(m_sTemporary));
}
