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

/// Keeps what a witness is told.
class CTold final : public ITagWitness {
public:
    void OnWriting(CTagChange const& change) override {
        m_sFrameId = change.m_sFrameId;
        m_before = change.m_textBefore;
        m_after = change.m_textAfter;
        m_vOld.assign(change.m_oldTag.begin(), change.m_oldTag.end());
        m_vNew.assign(change.m_newTag.begin(), change.m_newTag.end());
        m_bHasBytes = change.m_bHasBytes;
        m_sThere = ReadText(change.m_sPath.ToPath());
    }
    void OnWritten(std::optional<CFileIdentity> const& after) override { m_identity = after; }

    std::string m_sFrameId;
    std::optional<CString> m_before;
    std::optional<CString> m_after;
    std::vector<char> m_vOld;
    std::vector<char> m_vNew;
    bool m_bHasBytes = false;
    std::string m_sThere; // the file when it was told
    std::optional<CFileIdentity> m_identity;
};

TEST_F(LibraryStoreTest, AWitnessIsToldOfTheWriteBeforeIt) {
    std::string const before = ReadText(m_folder / "x.flac");
    CTold told;
    ASSERT_EQ(Store("x.flac", {"128.50", ""}, {.m_pWitness = &told}), EWriteProblem::None);
    std::string const after = ReadText(m_folder / "x.flac");
    EXPECT_EQ(told.m_sFrameId, "TBPM");
    EXPECT_FALSE(told.m_before);
    ASSERT_TRUE(told.m_after);
    EXPECT_EQ(told.m_after->ToUtf8(), "128.50");
    EXPECT_EQ(told.m_sThere, before);
    EXPECT_EQ(told.m_identity, IdentityAt(m_folder / "x.flac"));
    // The old front in the new one's place is the file as it was.
    ASSERT_TRUE(told.m_bHasBytes);
    ASSERT_TRUE(after.starts_with(std::string(told.m_vNew.begin(), told.m_vNew.end())));
    EXPECT_EQ(std::string(told.m_vOld.begin(), told.m_vOld.end()) +
                  after.substr(told.m_vNew.size()),
              before);
    // Of a whole number, MP4 keeps no fraction.
    Ffmpeg({"-i", m_folder / "source.wav", m_folder / "t.m4a"});
    ASSERT_EQ(Store("t.m4a", {"128.00", ""}, {.m_pWitness = &told}), EWriteProblem::None);
    EXPECT_EQ(told.m_after->ToUtf8(), "128");
    // Nothing is told of what changes nothing.
    CTold idle;
    EXPECT_EQ(Store("x.flac", {"128.50", ""}, {.m_pWitness = &idle}), EWriteProblem::None);
    EXPECT_EQ(idle.m_sFrameId, "");
}

TEST_F(LibraryStoreTest, ATempoIsTakenOutOfEveryKind) {
    for (char const* const name :
         {"t.flac", "t.ogg", "t.opus", "t.m4a", "t.wav", "t.aiff", "t.wv"}) {
        Ffmpeg({"-i", m_folder / "source.wav", "-metadata", "title=Song", m_folder / name});
        ASSERT_EQ(Store(name, {"128.50", ""}), EWriteProblem::None) << name;
        ASSERT_EQ(TagsOf(name).m_sTempo, "128.50") << name;
        EXPECT_EQ(Store(name, {.m_bNoTempo = true}), EWriteProblem::None) << name;
        EXPECT_EQ(TagsOf(name).m_sTempo, "") << name;
        EXPECT_EQ(TagsOf(name).m_sTitle, "Song") << name;
        // There is nothing to be taken out any more.
        CFileIdentity const identity = *IdentityAt(m_folder / name);
        EXPECT_EQ(Store(name, {.m_bNoTempo = true}), EWriteProblem::None) << name;
        EXPECT_EQ(IdentityAt(m_folder / name), identity) << name;
    }
}

TEST_F(LibraryStoreTest, WordsInATemposPlaceAreNoWholeNumber) {
    Ffmpeg({"-i", m_folder / "source.wav", m_folder / "t.m4a"});
    ASSERT_EQ(Store("t.m4a", {"quick", ""}), EWriteProblem::None);
    // Neither a tempo of 0 nor another one came of it.
    EXPECT_EQ(TagsOf("t.m4a").m_sTempo, "");
    ASSERT_EQ(Store("t.m4a", {"120", ""}), EWriteProblem::None);
    EXPECT_EQ(TagsOf("t.m4a").m_sTempo, "120");
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
