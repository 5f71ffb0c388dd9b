// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SourceFile.h"

#include "support/TempFolder.h"

#include <array>
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
    ASSERT_EQ(m_file.Open(m_folder / "x"), "");
    EXPECT_EQ(m_file.GetSize(), 10);
    EXPECT_EQ(m_file.Read(m_buffer.data(), 4), 4);
    EXPECT_EQ(m_buffer[3], '3');
    EXPECT_EQ(m_file.Seek(8), 8);
    EXPECT_EQ(m_file.Read(m_buffer.data(), 16), 2);
    EXPECT_EQ(m_buffer[1], '9');
    EXPECT_EQ(m_file.Read(m_buffer.data(), 16), 0);
    EXPECT_LT(m_file.Seek(-1), 0);
    EXPECT_EQ(m_file.Explain("as it was"), "as it was");
}

TEST_F(SourceFileTest, OpensRegularFilesAlone) {
    EXPECT_EQ(m_file.Open(m_folder / "none"), "No such file or directory");
    EXPECT_EQ(CSourceFile().Open(m_folder.Path()), "is a folder, not a file");
    ASSERT_EQ(mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(CSourceFile().Open(m_folder / "pipe"), "is not a regular file");
    WriteText(m_folder / "empty", "");
    EXPECT_EQ(CSourceFile().Open(m_folder / "empty"), "the file is empty");
}

TEST_F(SourceFileTest, GrownFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), "");
    WriteText(m_folder / "x", "0123456789A");
    EXPECT_EQ(m_file.Explain(""), "changed while it was read");
}

TEST_F(SourceFileTest, TouchedFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), "");
    auto const time = std::filesystem::last_write_time(m_folder / "x");
    std::filesystem::last_write_time(m_folder / "x", time + std::chrono::seconds(1));
    EXPECT_EQ(m_file.Explain("another reason"), "changed while it was read");
}

TEST_F(SourceFileTest, ReplacedFileHasChanged) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), "");
    WriteText(m_folder / "y", "0123456789");
    std::filesystem::last_write_time(m_folder / "y",
                                     std::filesystem::last_write_time(m_folder / "x"));
    std::filesystem::rename(m_folder / "y", m_folder / "x");
    EXPECT_EQ(m_file.Explain(""), "changed while it was read");
}

TEST_F(SourceFileTest, RemovedFileHasVanished) {
    ASSERT_EQ(m_file.Open(m_folder / "x"), "");
    std::filesystem::remove(m_folder / "x");
    EXPECT_EQ(m_file.Explain(""), "vanished while it was read");
}

} // namespace
