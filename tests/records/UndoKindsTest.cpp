// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Undo.h"

#include "song/AudioKinds.h"
#include "song/LibraryStore.h"
#include "song/SongTags.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <gtest/gtest.h>

// Writes into the tags of other kinds than MP3.

namespace {

class UndoKindsTest : public testing::Test {
protected:
    /// A song of the kind that `extension` tells.
    void Begin(std::string const& extension, double seconds = 1.0) {
        WriteWav(m_folder / "source.wav", MakeSine(440.0, seconds, 0.5f));
        m_sPath = m_folder / ("song." + extension);
        Ffmpeg({"-i", m_folder / "source.wav", "-metadata", "title=Song", m_sPath});
    }

    void Write(std::string const& tempo, bool isWitnessed = true) {
        auto const witness = m_journal.Witness(EJournalWriter::Analyze, ETextOrigin::Heard);
        CString const path = CString::FromPath(m_sPath);
        ASSERT_EQ(StoreByLibrary(path, *FindAudioKind(path), {tempo, ""},
                                 {.m_pWitness = isWitnessed ? witness.get() : nullptr}),
                  EWriteProblem::None);
    }

    CUndoResult Undo(CUndoOptions const& options = {}) {
        std::vector<CJournalEntry> const writes = m_journal.Writes(m_sPath, 1);
        EXPECT_EQ(writes.size(), 1U);
        return UndoWrite(m_journal, writes.at(0), m_sPath, options);
    }

    std::string Tempo() const { return ReadShownTags(CString::FromPath(m_sPath)).m_sTempo; }

    CTempFolder m_folder;
    std::string m_sPath;
    CJournal m_journal{m_folder / "state"};
};

TEST_F(UndoKindsTest, EveryKindComesBackByteForByteAndItsUndoToo) {
    for (char const* const kind : {"flac", "ogg", "opus", "m4a", "wav", "aiff", "wv"}) {
        Begin(kind);
        std::string const before = ReadText(m_sPath);
        std::int64_t const time = IdentityAt(m_sPath)->m_nWrittenTime;
        Write("128.50");
        std::string const written = ReadText(m_sPath);
        EXPECT_NE(written, before) << kind;
        EXPECT_EQ(Undo({.m_bKeepTime = true}).m_eUndo, EUndo::Restored) << kind;
        EXPECT_EQ(ReadText(m_sPath), before) << kind;
        EXPECT_EQ(IdentityAt(m_sPath)->m_nWrittenTime, time) << kind;
        EXPECT_EQ(Undo().m_eUndo, EUndo::Restored) << kind;
        EXPECT_EQ(ReadText(m_sPath), written) << kind;
    }
}

TEST_F(UndoKindsTest, WhatIsTooLongForTheJournalGoesBackAsText) {
    // The tag lies behind 5 MB of sound.
    Begin("wav", 60.0);
    std::int64_t const time = IdentityAt(m_sPath)->m_nWrittenTime;
    Write("90");
    Write("128.50");
    EXPECT_EQ(Undo().m_eUndo, EUndo::TextAlone);
    EXPECT_EQ(Tempo(), "90");
    std::vector<CJournalEntry> const writes = m_journal.Writes(m_sPath, 3);
    ASSERT_EQ(writes.size(), 3U);
    EXPECT_EQ(UndoWrite(m_journal, writes.back(), m_sPath, {.m_bKeepTime = true}).m_eUndo,
              EUndo::TextAlone);
    EXPECT_EQ(Tempo(), "");
    // Somebody has touched the file since that write: us.
    EXPECT_NE(IdentityAt(m_sPath)->m_nWrittenTime, time);
}

TEST_F(UndoKindsTest, AnotherProgramsWorkIsNotUndone) {
    Begin("flac");
    Write("128.50");
    // Somebody's title, of the same length: the front is another one.
    Ffmpeg({"-i", m_sPath, "-c", "copy", "-metadata", "title=Other song", m_folder / "other.flac"});
    WriteText(m_sPath, ReadText(m_folder / "other.flac"));
    EXPECT_EQ(Undo().m_eUndo, EUndo::TextAlone);
    EXPECT_EQ(Tempo(), "");
    EXPECT_EQ(ReadShownTags(CString::FromPath(m_sPath)).m_sTitle, "Other song");
    // Nor is a tempo that isn't ours.
    Write("128.50");
    Write("99", false);
    CUndoResult const left = Undo();
    EXPECT_EQ(left.m_eUndo, EUndo::OtherText);
    EXPECT_EQ(left.m_textThere, "99");
    EXPECT_EQ(Undo({.m_bForce = true}).m_eUndo, EUndo::TextAlone);
    EXPECT_EQ(Tempo(), "");
}

TEST_F(UndoKindsTest, WhereNothingOfItIsThereNothingIsDone) {
    Begin("ogg");
    std::string const before = ReadText(m_sPath);
    Write("128.50");
    WriteText(m_sPath, before);
    EXPECT_EQ(Undo().m_eUndo, EUndo::AsBefore);
    EXPECT_EQ(ReadText(m_sPath), before);
}

} // namespace
