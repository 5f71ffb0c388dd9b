// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/FileUri.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

TEST(FileUriTest, UriSpellsEveryByte) {
    EXPECT_EQ(FileUri("/m/a b%\xFF\xC3\xA9.mp3"), "file:///m/a%20b%25%FF%C3%A9.mp3");
    EXPECT_EQ(FileUri("/A-z_0.~"), "file:///A-z_0.~");
}

TEST(FileUriTest, RelativePathStartsAtTheWorkingFolder) {
    std::string const here = std::filesystem::current_path().native();
    EXPECT_EQ(FileUri("a b"), "file://" + PercentEncoded(here) + "/a%20b");
}

} // namespace
