// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SourceFile.h"

#include "support/TempFolder.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class SourceFileTest : public testing::Test {
protected:
    SourceFileTest() { WriteText(m_folder / "x", "0123456789"); }

    CTempFolder m_folder;
    CSourceFile m_file;
    std::array<std::uint8_t, 16> m_buffer{};
};

TEST_F(SourceFileTest, ReadsAndSeeks) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    EXPECT_EQ(m_file.GetSize(), 10);
    EXPECT_EQ(m_file.Read(m_buffer.data(), 4), 4);
    EXPECT_EQ(m_buffer[3], '3');
    EXPECT_EQ(m_file.Seek(8), 8);
    EXPECT_EQ(m_file.Read(m_buffer.data(), 16), 2);
    EXPECT_EQ(m_buffer[1], '9');
    EXPECT_EQ(m_file.Read(m_buffer.data(), 16), 0);
    EXPECT_LT(m_file.Seek(-1), 0);
    EXPECT_EQ(m_file.Explain(EDecodeProblem::NoAudio), EDecodeProblem::NoAudio);
    EXPECT_EQ(m_file.Explain(EDecodeProblem::None), EDecodeProblem::None);
    EXPECT_EQ(m_file.GetIdentity(), IdentityAt(m_folder / "x"));
}

TEST_F(SourceFileTest, OpensRegularFilesAlone) {
    EXPECT_EQ(m_file.Open(m_folder / "none"), EDecodeProblem::SystemError);
    EXPECT_EQ(m_file.GetError(), ENOENT);
    EXPECT_EQ(CSourceFile().Open(m_folder.Path()), EDecodeProblem::IsFolder);
    ASSERT_EQ(mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(CSourceFile().Open(m_folder / "pipe"), EDecodeProblem::NotRegular);
    WriteText(m_folder / "empty", "");
    EXPECT_EQ(CSourceFile().Open(m_folder / "empty"), EDecodeProblem::Empty);
}

TEST_F(SourceFileTest, GrownFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    WriteText(m_folder / "x", "0123456789A");
    EXPECT_EQ(m_file.Explain(EDecodeProblem::None), EDecodeProblem::Changed);
}

TEST_F(SourceFileTest, TouchedFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    auto const time = std::filesystem::last_write_time(m_folder / "x");
    std::filesystem::last_write_time(m_folder / "x", time + std::chrono::seconds(1));
    EXPECT_EQ(m_file.Explain(EDecodeProblem::NoAudio), EDecodeProblem::Changed);
}

TEST_F(SourceFileTest, AChangeIsSeenAlthoughTheTimeOfWritingIsSetBack) {
    timespec const times[2] = {{1'000'000, 0}, {1'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, (m_folder / "x").c_str(), times, 0), 0);
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    // The clock of file times may stand still for some milliseconds.
    while (IdentityAt(m_folder / "x") == m_file.GetIdentity()) {
        WriteText(m_folder / "x", "9876543210");
        ASSERT_EQ(utimensat(AT_FDCWD, (m_folder / "x").c_str(), times, 0), 0);
    }
    EXPECT_EQ(m_file.Explain(EDecodeProblem::None), EDecodeProblem::Changed);
}

TEST_F(SourceFileTest, ReplacedFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    WriteText(m_folder / "y", "0123456789");
    std::filesystem::last_write_time(m_folder / "y",
                                     std::filesystem::last_write_time(m_folder / "x"));
    std::filesystem::rename(m_folder / "y", m_folder / "x");
    EXPECT_EQ(m_file.Explain(EDecodeProblem::None), EDecodeProblem::Changed);
}

TEST_F(SourceFileTest, RemovedFileHasVanished) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), EDecodeProblem::None);
    std::filesystem::remove(m_folder / "x");
    EXPECT_EQ(m_file.Explain(EDecodeProblem::None), EDecodeProblem::Vanished);
}

} // namespace
