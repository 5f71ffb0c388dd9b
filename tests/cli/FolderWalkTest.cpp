// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/FolderWalk.h"

#include "cli/InputWalk.h"
#include "support/TempFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderWalkTest : public testing::Test {
protected:
    void Touch(std::string const& name) {
        std::filesystem::path const path = m_folder / name;
        std::filesystem::create_directories(path.parent_path());
        WriteText(path.native(), "x");
    }

    /// What a walk of `paths` gives, without the temporary folder.
    std::vector<std::string> Names(std::vector<std::string> const& paths,
                                   CWalkOptions const& options = {}) {
        CInputWalk walk(paths, options);
        std::vector<std::string> names;
        while (std::optional<CInputFile> const file = walk.Next()) {
            bool const isBelow = file->m_sName.starts_with(m_folder.Path() + "/");
            names.push_back(isBelow ? file->m_sName.substr(m_folder.Path().size() + 1)
                                    : file->m_sName);
        }
        EXPECT_TRUE(walk.IsAtEnd());
        return names;
    }

    CTempFolder m_folder;
};

TEST_F(FolderWalkTest, FilesComeInTheOrderGivenWhateverTheirExtension) {
    Touch("b.txt");
    Touch("a.wav");
    EXPECT_THAT(Names({m_folder / "b.txt", m_folder / "a.wav", m_folder / "none.mp3"}),
                ElementsAre("b.txt", "a.wav", "none.mp3"));
}

TEST_F(FolderWalkTest, FoldersGiveTheirAudioFilesSortedByBytes) {
    for (char const* name : {"B.wav", "a.mp3", "b/z.aiff", "b/a.aif", "b.caf", "c/d/e.m4a",
                             "c/x.txt", "c/wav", "c/.mp3", "Z.MP3", "\xE9.wav"}) {
        Touch(name);
    }
    EXPECT_THAT(Names({m_folder.Path()}),
                ElementsAre("B.wav", "Z.MP3", "a.mp3", "b/a.aif", "b/z.aiff", "b.caf", "c/.mp3",
                            "c/d/e.m4a", "\xE9.wav"));
}

TEST_F(FolderWalkTest, ExtensionsAreComparedWhole) {
    for (char const* name :
         {"a.wav", "a.mp3", "a.aiff", "a.aif", "a.caf", "a.m4a", "a.M4A", ".mp3", "/x.y/z.WaV"}) {
        EXPECT_TRUE(HasAudioExtension(name)) << name;
    }
    for (char const* name : {"a.if", "a.m4", "a.3", "a.av", "a.v;m", "a.wav;mp3", "x.txt", "x",
                             "x.", "/a.wav/x", "x.wavx", "mp3", ""}) {
        EXPECT_FALSE(HasAudioExtension(name)) << name;
    }
}

TEST_F(FolderWalkTest, ChosenTypesNarrowTheSearchOfFoldersAlone) {
    for (char const* name : {"a.flac", "d/b.mp3", "d/c.OGG", "d/e.oga", "f.wav"}) {
        Touch(name);
    }
    CWalkOptions options;
    options.m_types.emplace();
    ASSERT_EQ(options.m_types->Add("mp3,ogg"), "");
    EXPECT_THAT(Names({m_folder / "f.wav", m_folder.Path()}, options),
                ElementsAre("f.wav", "d/b.mp3", "d/c.OGG", "d/e.oga"));
}

TEST_F(FolderWalkTest, NamesOfSystemsAreKnown) {
    for (char const* name : {"._a.mp3", ".Trash", ".Trashes", ".Trash-1000", "#recycle",
                             ".snapshots", "@eaDir", "lost+found"}) {
        EXPECT_TRUE(IsLeftOut(name)) << name;
    }
    for (char const* name : {".a.mp3", "_a.mp3", "Trash", "recycle", "#recycled", "snapshots",
                             "@eaDirs", "lost and found"}) {
        EXPECT_FALSE(IsLeftOut(name)) << name;
    }
}

TEST_F(FolderWalkTest, OnePathCountsOnce) {
    Touch("a.wav");
    EXPECT_THAT(Names({m_folder / "a.wav", m_folder.Path(), m_folder / "a.wav"}),
                ElementsAre("a.wav"));
}

TEST_F(FolderWalkTest, LoopsOfLinksEnd) {
    Touch("d/a.wav");
    ASSERT_EQ(symlink("..", (m_folder / "d/up").c_str()), 0);
    ASSERT_EQ(symlink("self", (m_folder / "d/self").c_str()), 0);
    ASSERT_EQ(symlink(m_folder.Path().c_str(), (m_folder / "whole").c_str()), 0);
    EXPECT_THAT(Names({m_folder.Path()}), ElementsAre("d/a.wav"));
    EXPECT_THAT(Names({m_folder.Path()}, {.m_bFollows = true}), ElementsAre("d/a.wav"));
}

TEST_F(FolderWalkTest, FolderIsReadWhenItsTurnComes) {
    Touch("a/1.wav");
    Touch("b/2.wav");
    CFolderWalk walk(m_folder.Path(), {});
    EXPECT_EQ(walk.Next()->m_sPath, m_folder / "a/1.wav");
    Touch("b/3.wav");
    EXPECT_EQ(walk.Next()->m_sPath, m_folder / "b/2.wav");
    EXPECT_EQ(walk.Next()->m_sPath, m_folder / "b/3.wav");
    EXPECT_FALSE(walk.Next());
}

TEST_F(FolderWalkTest, FolderThatIsGoneIsAnItemWithItsError) {
    Touch("a/1.wav");
    Touch("b/2.wav");
    CFolderWalk walk(m_folder.Path(), {});
    EXPECT_EQ(walk.Next()->m_sPath, m_folder / "a/1.wav");
    std::filesystem::remove_all(m_folder / "b");
    std::optional<CWalkItem> const gone = walk.Next();
    EXPECT_EQ(gone->m_sPath, m_folder / "b");
    EXPECT_EQ(gone->m_error, std::errc::no_such_file_or_directory);
    EXPECT_FALSE(walk.Next());
}

TEST_F(FolderWalkTest, BarrenFoldersAreKept) {
    Touch("a/1.txt");
    Touch("b/2.wav");
    CInputWalk walk({m_folder / "a", m_folder / "b"}, {});
    EXPECT_EQ(walk.Next()->m_sName, m_folder / "b/2.wav");
    EXPECT_FALSE(walk.Next());
    EXPECT_THAT(walk.BarrenFolders(), ElementsAre(m_folder / "a"));
}

TEST_F(FolderWalkTest, EmptyFolderGivesNothing) {
    EXPECT_THAT(Names({m_folder.Path()}), IsEmpty());
}

} // namespace
