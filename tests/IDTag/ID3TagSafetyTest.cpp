// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ID3TagUpdateFixture.h"

#include "support/Unprivileged.h"

#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using ID3TagSafetyTest = CID3TagUpdateFixture;

TEST_F(ID3TagSafetyTest, LeftOverTemporaryFileIsStartedAfresh) {
    WriteBytes(m_sTemporary, FakeAudio(2'000'000)); // longer than the new file
    ExpectSwapped();
}

TEST_F(ID3TagSafetyTest, LinkUnderTheTemporaryNameIsNotWrittenThrough) {
    WriteText(m_sOther, "precious");
    std::filesystem::create_symlink(m_sOther, m_sTemporary);
    ExpectSwapped();
    EXPECT_EQ(ReadText(m_sOther), "precious");
    WriteBytes(m_sFile, kOld);
    std::filesystem::create_symlink(m_folder / "nowhere", m_sTemporary);
    ExpectSwapped();
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
        EXPECT_EQ(update.m_eProblem, EWriteProblem::FileSizeLimit);
        EXPECT_FALSE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kOld);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }
    std::signal(SIGXFSZ, handler);
    ExpectSwapped();
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
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(tag.GetTagSize()));
        return bytes;
    };
    EXPECT_EQ(audioOf(m_sFile), kAudio);
    EXPECT_EQ(audioOf(neighbour), otherAudio);
    EXPECT_FALSE(IsThere(m_sTemporary));
}
