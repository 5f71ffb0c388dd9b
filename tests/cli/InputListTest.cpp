// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/InputList.h"

#include "support/TempFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InputListTest : public testing::Test {
protected:
    void Touch(std::string const& name) {
        std::filesystem::path const path = m_folder / name;
        std::filesystem::create_directories(path.parent_path());
        WriteText(path.native(), "x");
    }

    /// Names of the inputs, without the temporary folder.
    std::vector<std::string> Names(std::vector<std::string> const& paths) {
        CInputList const inputs(paths);
        std::vector<std::string> names;
        for (CInputFile const& file : inputs.Files()) {
            bool const isBelow = file.m_sName.starts_with(m_folder.Path() + "/");
            names.push_back(isBelow ? file.m_sName.substr(m_folder.Path().size() + 1)
                                    : file.m_sName);
        }
        return names;
    }

    CTempFolder m_folder;
};

TEST_F(InputListTest, FilesComeInTheOrderGivenWhateverTheirExtension) {
    Touch("b.txt");
    Touch("a.wav");
    EXPECT_THAT(Names({m_folder / "b.txt", m_folder / "a.wav", m_folder / "none.mp3"}),
                ElementsAre("b.txt", "a.wav", "none.mp3"));
}

TEST_F(InputListTest, FoldersGiveTheirAudioFilesSortedByBytes) {
    for (char const* name : {"B.wav", "a.mp3", "b/z.aiff", "b/a.aif", "b.caf", "c/d/e.m4a",
                             "c/x.ogg", "c/wav", "c/.mp3", "Z.MP3", "\xE9.wav"}) {
        Touch(name);
    }
    EXPECT_THAT(Names({m_folder.Path()}),
                ElementsAre("B.wav", "Z.MP3", "a.mp3", "b/a.aif", "b/z.aiff", "b.caf", "c/.mp3",
                            "c/d/e.m4a", "\xE9.wav"));
}

TEST_F(InputListTest, PinsExtensionsAreSearchedInTheJoinedList) {
    for (char const* extension :
         {"wav", "mp3", "aiff", "aif", "caf", "m4a", "M4A", "if", "m4", "3", "av", "v;m"}) {
        EXPECT_TRUE(HasAudioExtension(CString((std::string("/x/y.") + extension).c_str())))
            << extension;
    }
    for (char const* name : {"x.ogg", "x", "x.", "/a.wav/x", "x.wavx", "x.txt"}) {
        EXPECT_FALSE(HasAudioExtension(CString(name))) << name;
    }
}

TEST_F(InputListTest, OnePathCountsOnce) {
    Touch("a.wav");
    EXPECT_THAT(Names({m_folder / "a.wav", m_folder.Path(), m_folder / "a.wav"}),
                ElementsAre("a.wav"));
}

TEST_F(InputListTest, LoopsOfLinksEnd) {
    Touch("d/a.wav");
    ASSERT_EQ(symlink("..", (m_folder / "d/up").c_str()), 0);
    ASSERT_EQ(symlink("self", (m_folder / "d/self").c_str()), 0);
    ASSERT_EQ(symlink(m_folder.Path().c_str(), (m_folder / "whole").c_str()), 0);
    EXPECT_THAT(Names({m_folder.Path()}), ElementsAre("d/a.wav"));
}

TEST_F(InputListTest, FolderWithoutPermissionIsAnEntryWithItsError) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    Touch("shut/a.wav");
    Touch("b.wav");
    ASSERT_EQ(chmod((m_folder / "shut").c_str(), 0), 0);
    CInputList const inputs({m_folder.Path()});
    chmod((m_folder / "shut").c_str(), 0700);
    ASSERT_EQ(inputs.Files().size(), 2U);
    std::size_t const shut = inputs.Files()[0].m_sName == m_folder / "shut" ? 0 : 1;
    EXPECT_EQ(inputs.Files()[shut].m_sError, "Permission denied");
    EXPECT_EQ(inputs.Files()[1 - shut].m_sError, "");
}

TEST_F(InputListTest, EmptyFolderGivesNothing) {
    EXPECT_THAT(Names({m_folder.Path()}), IsEmpty());
}

} // namespace
