// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Paths.h"

#include <QSysInfo>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

std::string Bytes(char const* url) {
    return LocalPathBytes(QUrl::fromEncoded(url));
}

using Texts = std::vector<std::string>;

} // namespace

TEST(PathsTest, ALocalFileGivesItsPath) {
    EXPECT_EQ(Bytes("file:///music/a.mp3"), "/music/a.mp3");
    EXPECT_EQ(Bytes("file:///music/one%20two%23.mp3"), "/music/one two#.mp3");
    EXPECT_EQ(Bytes("file:///music/%C3%A9.mp3"), "/music/\xC3\xA9.mp3");
    EXPECT_EQ(Bytes("file:///music/100%25.mp3"), "/music/100%.mp3");
}

TEST(PathsTest, BytesThatAreNoUtf8Survive) {
    EXPECT_EQ(Bytes("file:///music/caf%E9.mp3"), "/music/caf\xE9.mp3");
}

TEST(PathsTest, AFolderLosesItsLastSlash) {
    EXPECT_EQ(Bytes("file:///music/album/"), "/music/album");
    EXPECT_EQ(Bytes("file:///"), "/");
}

TEST(PathsTest, OnlyFilesOfThisMachineCount) {
    EXPECT_EQ(Bytes("https://example.org/a.mp3"), "");
    EXPECT_EQ(Bytes("file://elsewhere.example/a.mp3"), "");
    EXPECT_EQ(Bytes("file://localhost/a.mp3"), "/a.mp3");
    std::string const own = "file://" + QSysInfo::machineHostName().toStdString() + "/a.mp3";
    EXPECT_EQ(Bytes(own.c_str()), "/a.mp3");
}

TEST(PathsTest, ADragGivesItsLocalFilesInOrder) {
    QMimeData data;
    data.setUrls({QUrl("file:///b.mp3"), QUrl("https://example.org/x.mp3"), QUrl("file:///a.mp3")});
    EXPECT_EQ(LocalPaths(data), (Texts{"/b.mp3", "/a.mp3"}));
}

TEST(PathsTest, ArgumentsBecomeAbsolute) {
    std::string const here = std::filesystem::current_path().string();
    EXPECT_EQ(ArgumentPath("a.mp3"), here + "/a.mp3");
    EXPECT_EQ(ArgumentPath("./x/../a.mp3"), here + "/a.mp3");
    EXPECT_EQ(ArgumentPath("/music/"), "/music");
    EXPECT_EQ(ArgumentPath("/"), "/");
    EXPECT_EQ(ArgumentPath("/caf\xE9"), "/caf\xE9");
}
