// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileManager.h"

#include "WidePath.h"
#include "support/TempFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

// The paths below `folder`, without it; a "/" behind what is a directory.
std::vector<std::string> Walk(CTempFolder const& folder) {
    std::vector<std::string> names;
    std::size_t const skipped = folder.Path().size() + 1;
    CFileManager::Enumerate(CString::FromPath(folder.Path()), [&](CFileEntry const& entry) {
        names.push_back(entry.m_sPath.ToPath().substr(skipped) + (entry.m_bIsDirectory ? "/" : ""));
        return true;
    });
    return names;
}

} // namespace

TEST(FileManagerTest, TellsFilesFromFolders) {
    CTempFolder const folder;
    WriteText(folder / "file", "x");
    EXPECT_TRUE(CFileManager::Exists(In(folder, "file")));
    EXPECT_FALSE(CFileManager::IsDirectory(In(folder, "file")));
    EXPECT_TRUE(CFileManager::IsDirectory(CString::FromPath(folder.Path())));
    EXPECT_FALSE(CFileManager::Exists(In(folder, "missing")));
    EXPECT_FALSE(CFileManager::IsDirectory(In(folder, "missing")));
}

TEST(FileManagerTest, QuestionsFollowLinks) {
    CTempFolder const folder;
    fs::create_directory(folder / "real");
    fs::create_directory_symlink("real", folder / "link");
    fs::create_symlink("nowhere", folder / "dangling");
    EXPECT_TRUE(CFileManager::IsDirectory(In(folder, "link")));
    EXPECT_FALSE(CFileManager::Exists(In(folder, "dangling")));
}

TEST(FileManagerTest, WalksInTheOrderOfNamesFoldersBeforeTheirContents) {
    CTempFolder const folder;
    fs::create_directories(folder / "b/inner");
    WriteText(folder / "b/inner/2", "");
    WriteText(folder / "b/inner/1", "");
    WriteText(folder / "b.mp3", "");
    WriteText(folder / "a", "");
    WriteText(folder / "C", "");
    WriteText(folder / ".hidden", "");
    fs::create_directory(folder / "empty");
    // Bytes: "." 2E, "C" 43, "a" 61, "b" 62 (and "b" before "b.mp3"), "e" 65.
    EXPECT_EQ(Walk(folder),
              (std::vector<std::string>{".hidden", "C", "a", "b/", "b/inner/", "b/inner/1",
                                        "b/inner/2", "b.mp3", "empty/"}));
}

TEST(FileManagerTest, WalkKeepsAnyNameByteForByte) {
    CTempFolder const folder;
    WriteText(folder / "caf\xE9", "");
    WriteText(folder / "\xF0\x9F\x98\x80", "");
    WriteText(folder / " \n\\", "");
    EXPECT_EQ(Walk(folder), (std::vector<std::string>{" \n\\", "caf\xE9", "\xF0\x9F\x98\x80"}));
}

TEST(FileManagerTest, WalkListsLinkedFoldersWithoutEnteringThem) {
    CTempFolder const folder;
    fs::create_directory(folder / "real");
    WriteText(folder / "real/file", "");
    fs::create_directory_symlink("..", folder / "real/up");
    fs::create_symlink("real/file", folder / "link");
    EXPECT_EQ(Walk(folder), (std::vector<std::string>{"link", "real/", "real/file", "real/up"}));
}

TEST(FileManagerTest, WalkStartsThroughALinkAndIgnoresSlashesBehindTheFolder) {
    CTempFolder const folder;
    fs::create_directory(folder / "real");
    WriteText(folder / "real/file", "");
    fs::create_directory_symlink("real", folder / "link");
    std::vector<std::string> paths;
    CFileManager::Enumerate(In(folder, "link//"), [&](CFileEntry const& entry) {
        paths.push_back(entry.m_sPath.ToPath());
        return true;
    });
    EXPECT_EQ(paths, (std::vector<std::string>{folder / "link/file"}));
}

TEST(FileManagerTest, VisitorEndsTheWalk) {
    CTempFolder const folder;
    for (char const* name : {"1", "2", "3"}) {
        WriteText(folder / name, "");
    }
    int calls = 0;
    CFileManager::Enumerate(CString::FromPath(folder.Path()),
                            [&](CFileEntry const&) { return ++calls < 2; });
    EXPECT_EQ(calls, 2);
}

TEST(FileManagerTest, ReportsWhatIsNoReadableFolder) {
    CTempFolder const folder;
    WriteText(folder / "file", "");
    std::vector<std::string> failed;
    std::vector<std::error_code> errors;
    for (char const* name : {"file", "missing"}) {
        CFileManager::Enumerate(
            In(folder, name),
            [](CFileEntry const&) {
                ADD_FAILURE();
                return true;
            },
            [&](CString const& path, std::error_code error) {
                failed.push_back(path.ToPath());
                errors.push_back(error);
            });
    }
    EXPECT_EQ(failed, (std::vector<std::string>{folder / "file", folder / "missing"}));
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_EQ(errors[0], std::errc::not_a_directory);
    EXPECT_EQ(errors[1], std::errc::no_such_file_or_directory);
}

TEST(FileManagerTest, WalkGoesOnBehindAFolderThatVanished) {
    CTempFolder const folder;
    fs::create_directory(folder / "a");
    WriteText(folder / "b", "");
    std::vector<std::string> seen;
    int failures = 0;
    CFileManager::Enumerate(
        CString::FromPath(folder.Path()),
        [&](CFileEntry const& entry) {
            seen.push_back(entry.m_sPath.ToPath());
            fs::remove(folder / "a");
            return true;
        },
        [&](CString const& path, std::error_code error) {
            ++failures;
            EXPECT_EQ(path.ToPath(), folder / "a");
            EXPECT_EQ(error, std::errc::no_such_file_or_directory);
        });
    EXPECT_EQ(seen, (std::vector<std::string>{folder / "a", folder / "b"}));
    EXPECT_EQ(failures, 1);
}

TEST(FileManagerTest, RemovesFilesLinksAndEmptyFoldersOnly) {
    CTempFolder const folder;
    WriteText(folder / "file", "x");
    fs::create_symlink("file", folder / "link");
    fs::create_directories(folder / "full/inner");
    EXPECT_FALSE(CFileManager::Remove(In(folder, "link")));
    EXPECT_TRUE(CFileManager::Exists(In(folder, "file")));
    EXPECT_FALSE(CFileManager::Remove(In(folder, "file")));
    EXPECT_FALSE(CFileManager::Exists(In(folder, "file")));
    EXPECT_EQ(CFileManager::Remove(In(folder, "file")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(CFileManager::Remove(In(folder, "full")), std::errc::directory_not_empty);
    EXPECT_TRUE(CFileManager::Exists(In(folder, "full/inner")));
    EXPECT_FALSE(CFileManager::Remove(In(folder, "full/inner")));
}

TEST(FileManagerTest, RenameReplacesAFile) {
    CTempFolder const folder;
    WriteText(folder / "caf\xE9", "new");
    WriteText(folder / "song", "old");
    EXPECT_FALSE(CFileManager::Rename(In(folder, "caf\xE9"), In(folder, "song")));
    EXPECT_EQ(ReadText(folder / "song"), "new");
    EXPECT_FALSE(CFileManager::Exists(In(folder, "caf\xE9")));
    EXPECT_EQ(CFileManager::Rename(In(folder, "missing"), In(folder, "song")),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(ReadText(folder / "song"), "new");
}

TEST(FileManagerTest, CreatesOneFolder) {
    CTempFolder const folder;
    EXPECT_FALSE(CFileManager::CreateDirectory(In(folder, "a")));
    EXPECT_TRUE(CFileManager::IsDirectory(In(folder, "a")));
    EXPECT_FALSE(CFileManager::CreateDirectory(In(folder, "a")));
    EXPECT_EQ(CFileManager::CreateDirectory(In(folder, "b/c")),
              std::errc::no_such_file_or_directory);
}
