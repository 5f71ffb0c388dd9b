// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/MacCFile.h"

#include "support/TempFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t kWriteNew = CFile::modeWrite | CFile::modeCreate;
constexpr std::uint32_t kWriteKeep = kWriteNew | CFile::modeNoTruncate;

CString Path(std::string const& bytes) {
    return CString::FromPath(bytes);
}

std::string ReadSome(CFile& file, std::uint32_t count) {
    std::string text(count, '\0');
    text.resize(file.Read(text.data(), count));
    return text;
}

/// Runs an operation on a closed file; what it throws, if it throws at all.
template <typename Operation>
std::unique_ptr<CFileException> Thrown(Operation operation) {
    CFile closed;
    try {
        operation(closed);
    } catch (CFileException* exception) {
        return std::unique_ptr<CFileException>(exception);
    }
    return nullptr;
}

} // namespace

class MacCFileTest : public testing::Test {
protected:
    void SetUp() override { WriteText(m_sFile, "0123456789"); }

    CTempFolder m_folder;
    std::string const m_sFile = m_folder / "file";
    std::string const m_sMissing = m_folder / "missing";
};

using MacCFileDeathTest = MacCFileTest;

TEST_F(MacCFileTest, ReadsAnExistingFile) {
    CFile file;
    ASSERT_TRUE(file.Open(Path(m_sFile), CFile::modeRead, nullptr));
    EXPECT_EQ(file.GetFilePath(), Path(m_sFile));
    EXPECT_EQ(file.GetLength(), 10U);
    EXPECT_EQ(ReadSome(file, 4), "0123");
    EXPECT_EQ(file.GetPosition(), 4U);
    EXPECT_EQ(file.GetLength(), 10U);
    EXPECT_EQ(file.GetPosition(), 4U);
    EXPECT_EQ(ReadSome(file, 100), "456789");
    EXPECT_EQ(ReadSome(file, 1), "");
}

TEST_F(MacCFileTest, ReadingIsNotWriting) {
    CFile file(Path(m_sFile), CFile::modeRead);
    EXPECT_EQ(file.Write("x", 1), 0U);
    file.Close();
    EXPECT_EQ(ReadText(m_sFile), "0123456789");
}

TEST_F(MacCFileTest, MissingFileDoesNotOpen) {
    CFile file;
    EXPECT_FALSE(file.Open(Path(m_sMissing), CFile::modeRead, nullptr));
    EXPECT_FALSE(file.Open(Path(m_sMissing), CFile::modeWrite, nullptr));
    EXPECT_FALSE(file.Open(Path(m_sMissing), CFile::modeReadWrite, nullptr));
    EXPECT_FALSE(std::filesystem::exists(m_sMissing));
}

TEST_F(MacCFileTest, WritingWithoutCreateKeepsTheBytes) {
    CFile file;
    ASSERT_TRUE(file.Open(Path(m_sFile), CFile::modeWrite, nullptr));
    EXPECT_EQ(file.Write("ab", 2), 2U);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(ReadText(m_sFile), "ab23456789");
}

TEST_F(MacCFileTest, CreateEmptiesAnExistingFile) {
    CFile file;
    ASSERT_TRUE(file.Open(Path(m_sFile), kWriteNew, nullptr));
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST_F(MacCFileTest, NoTruncateKeepsAnExistingFileAndMakesAMissingOne) {
    CFile file;
    ASSERT_TRUE(file.Open(Path(m_sFile), kWriteKeep, nullptr));
    EXPECT_EQ(file.GetLength(), 10U);
    ASSERT_TRUE(file.Open(Path(m_sMissing), kWriteKeep, nullptr));
    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_TRUE(std::filesystem::exists(m_sMissing));
}

TEST_F(MacCFileTest, WritingAlsoReads) {
    for (std::uint32_t const access : {CFile::modeWrite, CFile::modeReadWrite}) {
        WriteText(m_sFile, "0123456789");
        CFile file(Path(m_sFile), access);
        EXPECT_EQ(ReadSome(file, 2), "01");
        EXPECT_EQ(file.Write("ab", 2), 2U);
        EXPECT_EQ(ReadSome(file, 2), "45");
        EXPECT_EQ(file.Close(), 0);
        EXPECT_EQ(ReadText(m_sFile), "01ab456789");
    }
}

TEST_F(MacCFileTest, PinsUnknownAccessOpensAndClosesNothing) {
    CFile file;
    EXPECT_FALSE(file.Open(Path(m_sFile), 3, nullptr));
    ASSERT_TRUE(file.Open(Path(m_sFile), CFile::modeRead, nullptr));
    EXPECT_TRUE(file.Open(Path(m_sMissing), 15 | CFile::modeCreate, nullptr));
    EXPECT_EQ(ReadSome(file, 2), "01");
    EXPECT_FALSE(std::filesystem::exists(m_sMissing));
}

TEST_F(MacCFileTest, SeeksFromThreePlaces) {
    CFile file(Path(m_sFile), CFile::modeRead);
    EXPECT_EQ(file.Seek(3, CFile::begin), 3U);
    EXPECT_EQ(file.Seek(2, CFile::current), 5U);
    EXPECT_EQ(file.Seek(-1, CFile::current), 4U);
    EXPECT_EQ(file.Seek(-2, CFile::end), 8U);
    EXPECT_EQ(ReadSome(file, 9), "89");
    EXPECT_EQ(file.Seek(5, CFile::end), 15U);
}

TEST_F(MacCFileTest, PinsOtherOriginMovesNothing) {
    CFile file(Path(m_sFile), CFile::modeRead);
    file.Seek(3, CFile::begin);
    EXPECT_EQ(file.Seek(1, 3), 3U);
    EXPECT_EQ(file.Seek(1, 0xFFFFFFFF), 3U);
}

TEST_F(MacCFileTest, PlacesBeforeTheBeginningAreNotReached) {
    CFile file(Path(m_sFile), CFile::modeRead);
    file.Seek(3, CFile::begin);
    EXPECT_EQ(file.Seek(-4, CFile::current), 3U);
    EXPECT_EQ(file.Seek(-11, CFile::end), 3U);
    EXPECT_EQ(file.Seek(-1, CFile::begin), 3U);
}

TEST_F(MacCFileTest, PositionsAboveTwoGigabytesAreReached) {
    std::filesystem::resize_file(m_sFile, 3'000'000'000);
    CFile file(Path(m_sFile), CFile::modeReadWrite);
    EXPECT_EQ(file.GetLength(), 3'000'000'000U);
    EXPECT_EQ(file.Seek(-3, CFile::end), 2'999'999'997U);
    EXPECT_EQ(file.Seek(static_cast<std::int32_t>(2'999'999'990U), CFile::begin), 2'999'999'990U);
    EXPECT_EQ(file.Write("x", 1), 1U);
    EXPECT_EQ(file.GetPosition(), 2'999'999'991U);
}

TEST_F(MacCFileTest, FileOfFourGigabytesIsTheLargest) {
    CFile file;
    std::filesystem::resize_file(m_sFile, 0xFFFFFFFF);
    EXPECT_TRUE(file.Open(Path(m_sFile), CFile::modeRead, nullptr));
    EXPECT_EQ(file.GetLength(), 0xFFFFFFFFU);
    std::filesystem::resize_file(m_sFile, 0x100000000);
    EXPECT_FALSE(file.Open(Path(m_sFile), CFile::modeRead, nullptr));
    EXPECT_FALSE(file.Open(Path(m_sFile), kWriteNew, nullptr));
    EXPECT_EQ(std::filesystem::file_size(m_sFile), 0x100000000U);
}

TEST_F(MacCFileTest, FoldersAndFifosDoNotOpen) {
    std::string const fifo = m_folder / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    CFile file;
    EXPECT_FALSE(file.Open(Path(m_folder.Path()), CFile::modeRead, nullptr));
    EXPECT_FALSE(file.Open(Path(fifo), CFile::modeRead, nullptr));
    EXPECT_FALSE(file.Open(Path(fifo), CFile::modeReadWrite, nullptr));
    EXPECT_FALSE(file.Open(Path(fifo), kWriteNew, nullptr));
}

TEST_F(MacCFileTest, NamesOfAnyBytesOpen) {
    for (char const* name : {"\xF0\x9F\x98\x80.mp3", "caf\xE9.mp3", "\xFF\xFE", "a\nb"}) {
        std::string const path = m_folder / name;
        CFile file;
        ASSERT_TRUE(file.Open(Path(path), kWriteNew, nullptr)) << name;
        EXPECT_EQ(file.GetFilePath().ToPath(), path);
        EXPECT_TRUE(std::filesystem::exists(path));
    }
}

TEST_F(MacCFileTest, ClosingTwiceIsFine) {
    CFile file(Path(m_sFile), CFile::modeRead);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.Close(), 0);
    file.Abort();
}

TEST_F(MacCFileDeathTest, AbortCloses) {
    CFile file(Path(m_sFile), CFile::modeRead);
    file.Abort();
    EXPECT_DEATH((void)file.GetPosition(), "m_pfile != NULL");
}

TEST_F(MacCFileTest, CloseTellsWhenTheDiskWasFull) {
    CFile file;
    ASSERT_TRUE(file.Open(L"/dev/full", CFile::modeWrite, nullptr));
    EXPECT_EQ(file.Write("x", 1), 1U); // still in the stream's buffer
    EXPECT_NE(file.Close(), 0);
}

TEST_F(MacCFileTest, ClosedFileThrows) {
    char byte = 0;
    auto const read = Thrown([&](CFile& file) { file.Read(&byte, 1); });
    auto const write = Thrown([&](CFile& file) { file.Write(&byte, 1); });
    auto const seek = Thrown([](CFile& file) { file.Seek(0, CFile::begin); });
    auto const oddSeek = Thrown([](CFile& file) { file.Seek(0, 9); });
    auto const length = Thrown([](CFile& file) { (void)file.GetLength(); });
    for (auto const* exception : {&read, &write, &seek, &oddSeek, &length}) {
        ASSERT_NE(*exception, nullptr);
        EXPECT_EQ((*exception)->m_nCause, 2);
        EXPECT_EQ((*exception)->m_nOsError, -1);
        EXPECT_TRUE((*exception)->m_sFileName.IsEmpty());
    }
}

TEST_F(MacCFileTest, RemoveAndRenameReportNothing) {
    CFile::Rename(Path(m_sFile), Path(m_sMissing));
    EXPECT_EQ(ReadText(m_sMissing), "0123456789");
    CFile::Rename(Path(m_sFile), Path(m_sMissing));
    EXPECT_EQ(ReadText(m_sMissing), "0123456789");
    CFile::Remove(Path(m_sMissing));
    EXPECT_FALSE(std::filesystem::exists(m_sMissing));
    CFile::Remove(Path(m_sMissing));
}

TEST(CFileExceptionTest, KeepsWhatItIsGiven) {
    CFileException const exception(3, 28, L"name");
    EXPECT_EQ(exception.m_nCause, 3);
    EXPECT_EQ(exception.m_nOsError, 28);
    EXPECT_TRUE(exception.m_sFileName == L"name");
    wchar_t text[4] = L"abc";
    std::uint32_t help = 7;
    EXPECT_TRUE(exception.GetErrorMessage(text, 4, &help));
    EXPECT_EQ(std::wstring(text), L"abc");
    EXPECT_EQ(help, 7U);
}

TEST_F(MacCFileDeathTest, PositionOfAClosedFileAsserts) {
    CFile file;
    EXPECT_DEATH((void)file.GetPosition(), "IDTag/MacCFile:[0-9]+.*m_pfile != NULL");
}

TEST_F(MacCFileDeathTest, CreatingForReadingAsserts) {
    CFile file;
    EXPECT_DEATH((void)file.Open(Path(m_sFile), CFile::modeRead | CFile::modeCreate, nullptr),
                 "IDTag/MacCFile:[0-9]+.*\\(nOpenFlags & modeCreate\\) == 0");
}
