// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/LibraryStore.h"

#include "IDTag/TagTarget.h"
#include "song/AudioKinds.h"
#include "song/SongTags.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

// tests/tags/kinds_matrix.py holds what is written against other programs.

namespace {

class LibraryStoreTest : public testing::Test {
protected:
    LibraryStoreTest() {
        WriteWav(m_folder / "source.wav", MakeSine(440.0, 1.0, 0.5f));
        Ffmpeg({"-i", m_folder / "source.wav", "-metadata", "title=Song", m_folder / "x.flac"});
    }

    EWriteProblem Store(std::string const& name, CTagWish const& wish,
                        CLibraryStoreOptions const& options = {}) {
        CString const path = CString::FromPath(m_folder / name);
        return StoreByLibrary(path, *FindAudioKind(path), wish, options);
    }

    CShownTags TagsOf(std::string const& name) {
        return ReadShownTags(CString::FromPath(m_folder / name));
    }

    /// Holds that a write is refused and leaves the folder as it was.
    void ExpectRefused(EWriteProblem problem, std::string const& name,
                       CLibraryStoreOptions const& options = {}) {
        std::string const before = ReadText(m_folder / name);
        auto const count = std::distance(std::filesystem::directory_iterator(m_folder.Path()), {});
        EXPECT_EQ(Store(name, {"128.50", ""}, options), problem);
        EXPECT_EQ(ReadText(m_folder / name), before);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), count);
    }

    CTempFolder m_folder;
};

TEST_F(LibraryStoreTest, TempoAndKeyAreStored) {
    EXPECT_EQ(Store("x.flac", {"128.50", "Ebm"}), EWriteProblem::None);
    CShownTags const tags = TagsOf("x.flac");
    EXPECT_EQ(tags.m_sTempo, "128.50");
    EXPECT_EQ(tags.m_sKey, "Ebm");
    EXPECT_EQ(tags.m_sTitle, "Song");
}

TEST_F(LibraryStoreTest, ATempoThatSomebodyHasSetMeanwhileStays) {
    ASSERT_EQ(Store("x.flac", {"99", ""}), EWriteProblem::None);
    ExpectRefused(EWriteProblem::TempoChanged, "x.flac", {.m_tempoBefore = ""});
    EXPECT_EQ(Store("x.flac", {"128.50", ""}, {.m_tempoBefore = "99"}), EWriteProblem::None);
}

TEST_F(LibraryStoreTest, OnlyTheFileThatWasHeardIsWritten) {
    CFileIdentity identity = *IdentityAt(m_folder / "x.flac");
    identity.m_nSize += 1;
    ExpectRefused(EWriteProblem::Changed, "x.flac", {.m_expected = identity});
}

TEST_F(LibraryStoreTest, AnotherKindUnderItsNameIsLeftAlone) {
    WriteText(m_folder / "text.flac", std::string(3000, 'x'));
    ExpectRefused(EWriteProblem::OtherContent, "text.flac");
}

TEST_F(LibraryStoreTest, ALinkToAnotherKindIsLeftAlone) {
    std::filesystem::copy(m_folder / "x.flac", m_folder / "key.txt");
    std::filesystem::create_symlink("key.txt", m_folder / "link.flac");
    ExpectRefused(EWriteProblem::LinkTarget, "link.flac");
}

TEST_F(LibraryStoreTest, ALinkStaysOneAndItsTargetIsWritten) {
    std::filesystem::create_symlink("x.flac", m_folder / "link.flac");
    EXPECT_EQ(Store("link.flac", {"128.50", ""}), EWriteProblem::None);
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "link.flac"));
    EXPECT_EQ(TagsOf("x.flac").m_sTempo, "128.50");
}

TEST_F(LibraryStoreTest, AFileThatIsBeingWrittenIsLeftAlone) {
    std::ofstream const writer(m_folder / "x.flac", std::ios::app);
    EXPECT_EQ(Store("x.flac", {"128.50", ""}), EWriteProblem::InUse);
}

TEST_F(LibraryStoreTest, ATagThatWouldHaveToBeUnfoldedIsLeftAlone) {
    // An ID3v2.4 tag in a chunk with a compressed frame: size 12, form 08.
    std::string const frame("TXXX\0\0\0\2\0\x08"
                            "ab",
                            12);
    std::string const tag = std::string("ID3\4\0\0\0\0\0\x0C", 10) + frame;
    std::string const wav = ReadText(m_folder / "source.wav");
    WriteText(m_folder / "x.wav", wav + std::string("id3 \x16\0\0\0", 8) + tag);
    ExpectRefused(EWriteProblem::EncodedFrames, "x.wav");
}

} // namespace
