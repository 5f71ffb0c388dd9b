// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Files that change while they are written, and the looks that find it out.

#include "ID3TagUpdateFixture.h"

#include "support/FailingAllocation.h"
#include "support/SystemCalls.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Changes one byte as an editor does that sets the time of the last write back.
void EditKeepingTheTime(std::string const& path, std::int64_t offset) {
    struct stat before = {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    int const file = ::open(path.c_str(), O_RDWR);
    ASSERT_EQ(::pwrite(file, "!", 1, offset), 1);
    timespec const times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::futimens(file, times), 0);
    ::close(file);
}

class ID3TagChangeTest : public CID3TagUpdateFixture {
protected:
    /// Whatever came of it, the edited byte must be in the file.
    void ExpectEditKept(CUpdate const& update, std::size_t offset) {
        EXPECT_EQ(update.m_eProblem, EWriteProblem::Changed);
        EXPECT_EQ(ReadBytes(m_sFile).at(offset), '!');
        EXPECT_FALSE(IsThere(m_sTemporary));
    }

    static bool HasLeases(std::string const& path) {
        int const file = ::open(path.c_str(), O_RDONLY);
        bool const has = ::fcntl(file, F_SETLEASE, F_RDLCK) == 0;
        ::close(file);
        return has;
    }
};

TEST_F(ID3TagChangeTest, EditThatKeepsTheTimeStopsTheSwap) {
    CSystemCalls calls;
    calls.m_fsync = [this] {
        EditKeepingTheTime(m_sFile, 5000); // in the audio, after it was copied
        return 0;
    };
    ExpectEditKept(SetTempo(m_sFile), 5000);
}

TEST_F(ID3TagChangeTest, EditThatKeepsTheTimeStopsTheWriteInPlace) {
    WriteBytes(m_sFile, kRoomy);
    CSystemCalls calls;
    calls.m_open = [this](int flags) {
        if ((flags & O_ACCMODE) == O_RDWR) {
            EditKeepingTheTime(m_sFile, 5000);
        }
        return 0;
    };
    ExpectEditKept(SetTempo(m_sFile), 5000);
}

TEST_F(ID3TagChangeTest, EditInTheSameTickAsTheLastChangeIsSeen) {
    // Each round begins with a file that has just been changed.
    for (int i = 0; i < 5; ++i) {
        WriteBytes(m_sFile, kOld);
        CSystemCalls calls;
        calls.m_fsync = [this] {
            EditKeepingTheTime(m_sFile, 5000);
            return 0;
        };
        ExpectEditKept(SetTempo(m_sFile), 5000);
    }
}

TEST_F(ID3TagChangeTest, NameThatWasGivenToAnotherFileIsLeftAlone) {
    WriteBytes(m_sOther, kOld);
    CSystemCalls calls;
    calls.m_flock = [this](int) {
        if (IsThere(m_sOther)) {
            std::filesystem::rename(m_sOther, m_sFile);
        }
        return 0;
    };
    EXPECT_EQ(SetTempo(m_sFile).m_eProblem, EWriteProblem::Changed);
    EXPECT_EQ(ReadBytes(m_sFile), kOld);
}

TEST_F(ID3TagChangeTest, FileThatSomebodyWritesIsNotSwapped) {
    if (!HasLeases(m_sFile)) {
        GTEST_SKIP() << "this file system doesn't tell who writes";
    }
    int const writer = ::open(m_sFile.c_str(), O_WRONLY | O_APPEND);
    ExpectRefused(EWriteProblem::InUse);
    EXPECT_FALSE(IsThere(m_sTemporary));
    // What is written later is still in the file of that name.
    ASSERT_EQ(::write(writer, "more", 4), 4);
    ::close(writer);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({kOld, Ascii("more")}));
    EXPECT_EQ(SetTempo(m_sFile).m_eProblem, EWriteProblem::None);
}

TEST_F(ID3TagChangeTest, WriterThatComesDuringTheCopyStopsTheSwap) {
    if (!HasLeases(m_sFile)) {
        GTEST_SKIP() << "this file system doesn't tell who writes";
    }
    int writer = -1;
    CSystemCalls calls;
    calls.m_fsync = [&] {
        writer = ::open(m_sFile.c_str(), O_WRONLY | O_APPEND);
        return 0;
    };
    ExpectRefused(EWriteProblem::InUse);
    EXPECT_FALSE(IsThere(m_sTemporary));
    ::close(writer);
}

TEST_F(ID3TagChangeTest, ReadersAreNoObstacle) {
    int const reader = ::open(m_sFile.c_str(), O_RDONLY);
    ExpectSwapped();
    ::close(reader);
}

TEST_F(ID3TagChangeTest, WhereThereAreNoLocksTheIdentityMustDo) {
    for (int const error : {ENOSYS, EOPNOTSUPP, ENOLCK, EINVAL}) {
        WriteBytes(m_sFile, kOld);
        CSystemCalls calls;
        calls.m_flock = [error](int) { return error; };
        ExpectSwapped();
        WriteBytes(m_sFile, kRoomy);
        EXPECT_EQ(SetTempo(m_sFile).m_eProblem, EWriteProblem::None);
        EXPECT_EQ(ReadBytes(m_sFile), kRoomyNew);
        WriteBytes(m_sFile, kOld);
        calls.m_fsync = [this] {
            EditKeepingTheTime(m_sFile, 5000);
            return 0;
        };
        ExpectEditKept(SetTempo(m_sFile), 5000);
    }
}

TEST_F(ID3TagChangeTest, WithoutLocksAYoungTemporaryFileIsSomebodys) {
    CSystemCalls calls;
    calls.m_flock = [](int) { return ENOSYS; };
    WriteText(m_sTemporary, "half a file");
    ExpectRefused(EWriteProblem::InUse);
    EXPECT_EQ(ReadText(m_sTemporary), "half a file");
    // Two minutes later nobody writes it any more; it loses its name, not its bytes.
    timespec const times[2] = {{::time(nullptr) - 120, 0}, {::time(nullptr) - 120, 0}};
    int const theirs = ::open(m_sTemporary.c_str(), O_RDWR);
    ASSERT_EQ(::futimens(theirs, times), 0);
    ExpectSwapped();
    struct stat info = {};
    ASSERT_EQ(::fstat(theirs, &info), 0);
    EXPECT_EQ(info.st_nlink, 0U);
    EXPECT_EQ(info.st_size, 11);
    ::close(theirs);
}

TEST_F(ID3TagChangeTest, LocksThatOnlyWritersGetAreTakenAsOne) {
    CSystemCalls calls;
    calls.m_flock = [](int file) {
        return (::fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY ? EBADF : 0;
    };
    ExpectSwapped();
    WriteBytes(m_sFile, kRoomy);
    EXPECT_EQ(SetTempo(m_sFile).m_eProblem, EWriteProblem::None);
    EXPECT_EQ(ReadBytes(m_sFile), kRoomyNew);
}

TEST_F(ID3TagChangeTest, FileThatMayNotBeReplacedSaysSo) {
    for (int const error : {EPERM, EACCES, EBUSY}) {
        CSystemCalls calls;
        calls.m_rename = [error] { return error; };
        ExpectRefused(EWriteProblem::MayNotReplace);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }
}

TEST_F(ID3TagChangeTest, WhereNamesCannotBeRemovedAnEmptyFileStays) {
    CSystemCalls calls;
    calls.m_rename = [] { return EPERM; };
    calls.m_unlink = [] { return EPERM; };
    ExpectRefused(EWriteProblem::MayNotReplace);
    EXPECT_EQ(std::filesystem::file_size(m_sTemporary), 0U);
}

TEST_F(ID3TagChangeTest, NoMemoryForTheCopyIsSaid) {
    CUpdate update;
    CID3Tag tag;
    (void)tag.OpenFile(CString::FromPath(m_sFile));
    (void)tag.SetString("TBPM", L"128");
    {
        CFailingAllocation const failing;
        update.m_nStatus = tag.UpdateFile(&update.m_bRewritten);
    }
    EXPECT_EQ(update.m_nStatus, kStatusFailure);
    EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::NoMemory);
    EXPECT_EQ(ReadBytes(m_sFile), kOld);
    EXPECT_FALSE(IsThere(m_sTemporary));
}

TEST_F(ID3TagChangeTest, SwapNeedsLittleStack) {
    constexpr std::size_t kStackBytes = 128 * 1024; // a thread of a small system
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_attr_init(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, kStackBytes), 0);
    pthread_t thread = {};
    auto const run = [](void* path) -> void* {
        (void)SetTempo(*static_cast<std::string const*>(path));
        return nullptr;
    };
    std::string path = m_sFile;
    ASSERT_EQ(::pthread_create(&thread, &attributes, run, &path), 0);
    ASSERT_EQ(::pthread_join(thread, nullptr), 0);
    ::pthread_attr_destroy(&attributes);
    EXPECT_EQ(ReadBytes(m_sFile), kNew);
}

} // namespace
