// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileUtil.h"

#include "WidePath.h"
#include "base/FileManager.h"
#include "support/TempFolder.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace {

constexpr wchar_t const* kMusic = L"wav;mp3;aiff;aif;caf;m4a";

} // namespace

TEST(FileUtilTest, PathAppendJoins) {
    CString out("old");
    EXPECT_EQ(CFileUtil::PathAppend(L"/a/", L"b", out), 0);
    EXPECT_EQ(out, "/a/b");
    EXPECT_EQ(CFileUtil::PathAppend(out, L"c", out), 0);
    EXPECT_EQ(out, "/a/b/c");
}

TEST(FileUtilTest, FindsAFolderAnywhereInAPath) {
    EXPECT_EQ(CFileUtil::IsFileInDir(L"/Music/Album/song.mp3", L"/music/ALBUM"), 0);
    EXPECT_EQ(CFileUtil::IsFileInDir(L"/media/music/song.mp3", L"/music"), 0);
    EXPECT_EQ(CFileUtil::IsFileInDir(L"/media/song.mp3", L"/music"), 1);
}

TEST(FileUtilTest, TellsWhatExists) {
    CTempFolder const folder;
    WriteText(folder / "file", "x");
    CString const file = In(folder, "file");
    CString const itself = CString::FromPath(folder.Path());
    CString const missing = In(folder, "missing");
    EXPECT_EQ(CFileUtil::DoesFileExist(file, 0), 0);
    EXPECT_EQ(CFileUtil::DoesFileExist(file, 1), 0);
    EXPECT_EQ(CFileUtil::DoesFileExist(itself, 0), 0);
    EXPECT_EQ(CFileUtil::DoesFileExist(itself, 1), 1);
    EXPECT_EQ(CFileUtil::DoesFileExist(itself, -1), 1);
    EXPECT_EQ(CFileUtil::DoesFileExist(missing, 0), 1);
    EXPECT_EQ(CFileUtil::DoesFileExist(missing, 1), 1);
    EXPECT_EQ(CFileUtil::DoesFileExist(L"", 0), 1);
}

TEST(FileUtilTest, AnythingThatExistsCountsAsAValidDirectory) {
    CTempFolder const folder;
    WriteText(folder / "file", "x");
    EXPECT_EQ(CFileUtil::IsDirectoryValid(CString::FromPath(folder.Path())), 0);
    EXPECT_EQ(CFileUtil::IsDirectoryValid(In(folder, "file")), 0);
    EXPECT_EQ(CFileUtil::IsDirectoryValid(In(folder, "missing")), 1);
}

TEST(FileUtilTest, MatchesAnItemOfTheListInAnyCase) {
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"wav", kMusic), 0);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"WAV", kMusic), 0);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"caf", L"WAV;CAF;"), 0);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"if", kMusic), 1);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"mp3;aiff", kMusic), 1);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"", kMusic), 1);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"wav", L""), 1);
}

TEST(FileUtilTest, PinsLastListItemNeverMatches) {
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"m4a", kMusic), 1);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"m4a", L"wav;m4a;"), 0);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"wav", L"wav"), 1);
}

TEST(FileUtilTest, AnEmptyListItemEndsTheSearch) {
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"mp3", L"wav;;mp3;"), 1);
    EXPECT_EQ(CFileUtil::IsMatchingFileExt(L"mp3", L";mp3;"), 1);
}

TEST(FileUtilTest, ParentLacksTheLastPart) {
    CString out;
    EXPECT_EQ(CFileUtil::GetParentDirectory(L"/a/b/", out), 0);
    EXPECT_EQ(out, "/a");
    EXPECT_EQ(CFileUtil::GetParentDirectory(L"/a/b", out), 0);
    EXPECT_EQ(out, "/a");
    EXPECT_EQ(CFileUtil::GetParentDirectory(L"a/b", out), 0);
    EXPECT_EQ(out, "a");
    // One slash is dropped at the end, not two.
    EXPECT_EQ(CFileUtil::GetParentDirectory(L"/a/b//", out), 0);
    EXPECT_EQ(out, "/a/b");
}

TEST(FileUtilTest, RootIsNobodysParent) {
    for (wchar_t const* path : {L"/a", L"/a/", L"/", L"//", L"a", L"a/", L""}) {
        CString out("kept");
        EXPECT_EQ(CFileUtil::GetParentDirectory(path, out), 1) << CString(path).ToUtf8();
        EXPECT_EQ(out, "kept");
    }
}

TEST(FileUtilTest, RemovesInvalidCharacters) {
    CString name("a:b/c?d");
    EXPECT_EQ(CFileUtil::RemoveInvalidFileNameChars(name), 0);
    EXPECT_EQ(name, "abcd");
    name = L"1%2^3*4\"5\\6/7?8:9'0|a<b>c$d[e]f.(-_ \u00E9)";
    EXPECT_EQ(CFileUtil::RemoveInvalidFileNameChars(name), 0);
    EXPECT_EQ(name, L"1234567890abcdef.(-_ \u00E9)");
}

TEST(FileUtilTest, PinsInvalidCharactersNameTwoOfThemTwice) {
    EXPECT_EQ(CFileUtil::kInvalidFileNameChars, u"%^*\"\\/?*:'|<>$%[]");
    EXPECT_EQ(CFileUtil::kInvalidFileNameChars.size(), 17U);
}

TEST(FileUtilTest, ChangesTheExtensionOfTheLastPart) {
    CString out;
    EXPECT_EQ(CFileUtil::ChangeFileExt(L"/d/song.mp3", L"tmp", out), 0);
    EXPECT_EQ(out, "/d/song.tmp");
    EXPECT_EQ(CFileUtil::ChangeFileExt(L"/x.y/name", L"tmp", out), 0);
    EXPECT_EQ(out, "/x.y/name.tmp");
    EXPECT_EQ(CFileUtil::ChangeFileExt(L"name", L"tmp", out), 0);
    EXPECT_EQ(out, "name.tmp");
    EXPECT_EQ(CFileUtil::ChangeFileExt(L"a.b.c", L"d", out), 0);
    EXPECT_EQ(out, "a.b.d");
    EXPECT_EQ(CFileUtil::ChangeFileExt(L".mp3", L"tmp", out), 0);
    EXPECT_EQ(out, ".tmp");
    EXPECT_EQ(CFileUtil::ChangeFileExt(L"song.", L"", out), 0);
    EXPECT_EQ(out, "song.");
    EXPECT_EQ(CFileUtil::ChangeFileExt(out, L"mp3", out), 0);
    EXPECT_EQ(out, "song.mp3");
}

TEST(FileUtilTest, FileNameFollowsTheLastSlash) {
    CString out;
    EXPECT_EQ(CFileUtil::ExtractFileName(L"/a/b.mp3", out), 0);
    EXPECT_EQ(out, "b.mp3");
    EXPECT_EQ(CFileUtil::ExtractFileName(L"/b", out), 0);
    EXPECT_EQ(out, "b");
    EXPECT_EQ(CFileUtil::ExtractFileName(L"/a/b/", out), 1);
    EXPECT_EQ(out, "/a/b/");
    EXPECT_EQ(CFileUtil::ExtractFileName(L"b.mp3", out), 1);
    EXPECT_EQ(out, "b.mp3");
    EXPECT_EQ(CFileUtil::ExtractFileName(L"/", out), 1);
    EXPECT_EQ(out, "/");
}

TEST(FileUtilTest, FilePathPrecedesTheLastSlash) {
    CString out("kept");
    EXPECT_EQ(CFileUtil::ExtractFilePath(L"bare", out), kStatusFailure);
    EXPECT_EQ(CFileUtil::ExtractFilePath(L"/bare", out), kStatusFailure);
    EXPECT_EQ(out, "kept");
    EXPECT_EQ(CFileUtil::ExtractFilePath(L"/a/b", out), 0);
    EXPECT_EQ(out, "/a");
    EXPECT_EQ(CFileUtil::ExtractFilePath(L"/a/b/", out), 0);
    EXPECT_EQ(out, "/a/b");
}

TEST(FileUtilTest, RemovesTheExtensionOfTheLastPart) {
    CString name("/a/song.mp3");
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 0);
    EXPECT_EQ(name, "/a/song");
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 1);
    EXPECT_EQ(name, "/a/song");
    name = L"/x.y/song";
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 1);
    EXPECT_EQ(name, "/x.y/song");
    name = L"a.b.c";
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 0);
    EXPECT_EQ(name, "a.b");
    name = L"/.mp3"; // The dot is at position 1 and behind the slash.
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 0);
    EXPECT_EQ(name, "/");
}

TEST(FileUtilTest, ExtensionComesInLowerCase) {
    CString out("kept");
    EXPECT_EQ(CFileUtil::GetLowerCaseFileExt(L"/A/Song.MP3", out), 0);
    EXPECT_EQ(out, "mp3");
    EXPECT_EQ(CFileUtil::GetLowerCaseFileExt(L"song.", out), 0);
    EXPECT_EQ(out, "");
    out = L"kept";
    EXPECT_EQ(CFileUtil::GetLowerCaseFileExt(L"/x.y/song", out), 1);
    EXPECT_EQ(CFileUtil::GetLowerCaseFileExt(L"song", out), 1);
    EXPECT_EQ(out, "kept");
}

TEST(FileUtilTest, PinsLeadingDotBeginsAnExtensionForTheQueryOnly) {
    CString name(".mp3");
    EXPECT_EQ(CFileUtil::RemoveExtension(name), 1);
    EXPECT_EQ(name, ".mp3");
    CString out;
    EXPECT_EQ(CFileUtil::GetLowerCaseFileExt(L".MP3", out), 0);
    EXPECT_EQ(out, "mp3");
}

TEST(FileUtilTest, CreatesEveryMissingFolder) {
    CTempFolder const folder;
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "a/b/c")), 0);
    EXPECT_TRUE(CFileManager::IsDirectory(In(folder, "a/b/c")));
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "a/b/c")), 0);
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "d/e/")), 0);
    EXPECT_TRUE(CFileManager::IsDirectory(In(folder, "d/e")));
}

TEST(FileUtilTest, CreatesFoldersOfAnyName) {
    CTempFolder const folder;
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "caf\xE9/\xF0\x9F\x98\x80")), 0);
    EXPECT_TRUE(CFileManager::IsDirectory(In(folder, "caf\xE9/\xF0\x9F\x98\x80")));
}

TEST(FileUtilTest, CannotCreateAFolderWithoutAParent) {
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(L"/tactus-test-folder"), kStatusFailure);
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(L"tactus-test-folder"), kStatusFailure);
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(L""), kStatusFailure);
    EXPECT_FALSE(CFileManager::Exists(CString("/tactus-test-folder")));
}

TEST(FileUtilTest, DoesNotCheckTheLastCreation) {
    CTempFolder const folder;
    WriteText(folder / "file", "x");
    // The parent is a file, so nothing can be made in it.
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "file/a")), 0);
    EXPECT_FALSE(CFileManager::Exists(In(folder, "file/a")));
    // One level more: the folder between never comes to be, and the passes run out.
    EXPECT_EQ(CFileUtil::CreateDirectoryFull(In(folder, "file/a/b")), kStatusFailure);
}

TEST(FileUtilTest, FixedAnswersWriteNothing) {
    EXPECT_EQ(CFileUtil::IsFreeSpaceAvailable(L"/", ~0ULL), 0);
    CString out("kept");
    std::wstring text = L"kept";
    EXPECT_EQ(CFileUtil::CreateFileDlgString(out, text.data(), 4), 0);
    EXPECT_EQ(CFileUtil::ExtractSecondaryPath(L"/a/b", L"/a", out), 1);
    EXPECT_EQ(out, "kept");
    EXPECT_EQ(text, L"kept");
    std::uint64_t size = 7;
    EXPECT_EQ(CFileUtil::GetFileSize(L"/", &size), kStatusFailure);
    EXPECT_EQ(CFileUtil::GetFileVersion(L"/", &size), kStatusFailure);
    EXPECT_EQ(size, 7U);
    std::uint32_t high = 8;
    std::uint32_t low = 9;
    EXPECT_EQ(CFileUtil::GetFileVersion(L"/", &high, &low), kStatusFailure);
    EXPECT_EQ(high, 8U);
    EXPECT_EQ(low, 9U);
}
