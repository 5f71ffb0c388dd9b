// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/HomePage.h"

#include "support/TempFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

void WriteGuide(CTempFolder const& folder, char const* place) {
    std::filesystem::create_directories(folder / place);
    WriteText(folder / (std::string(place) + "/index.html"), "<html>");
}

} // namespace

TEST(HomePageTest, AnInstalledProgramFindsTheGuideOfItsInstallation) {
    CTempFolder const folder;
    std::filesystem::create_directories(folder / "bin");
    WriteGuide(folder, "share/doc/tactus/html");
    EXPECT_EQ(GuideAddress(folder / "bin"),
              "file://" + (folder / "share/doc/tactus/html/index.html"));
}

TEST(HomePageTest, AProgramInItsBuildFolderFindsTheGuideBuiltWithIt) {
    CTempFolder const folder;
    std::filesystem::create_directories(folder / "src/desktop");
    WriteGuide(folder, "docs/guide/html");
    EXPECT_EQ(GuideAddress(folder / "src/desktop"),
              "file://" + (folder / "docs/guide/html/index.html"));
}

TEST(HomePageTest, WithoutAGuideItIsThePlaceOfTheInstallation) {
    CTempFolder const folder;
    std::string const address = GuideAddress(folder / "bin");
    EXPECT_TRUE(address.starts_with("file:///")) << address;
    EXPECT_TRUE(address.ends_with("/share/doc/tactus/html/index.html")) << address;
}

TEST(HomePageTest, OddCharactersInThePathAreEncoded) {
    CTempFolder const folder;
    std::filesystem::create_directories(folder / "my #1 100%/bin");
    WriteGuide(folder, "my #1 100%/share/doc/tactus/html");
    EXPECT_EQ(GuideAddress(folder / "my #1 100%/bin"),
              "file://" + folder.Path() + "/my%20%231%20100%25/share/doc/tactus/html/index.html");
}

TEST(HomePageTest, ThisProgramHasAPage) {
    EXPECT_NE(HomePage().find("://"), std::string::npos);
}
