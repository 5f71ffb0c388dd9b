// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/SongRecall.h"

#include "base/FileIdentity.h"
#include "records/RecordStore.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <gtest/gtest.h>

namespace {

struct SongRecallTest : testing::Test {
    /// 40 s at 120 BPM, old enough that a change would show.
    std::string writeSong(std::string const& name) const {
        WriteWav(folder / name, MakeClickTrack(120.0, 40.0));
        WaitUntilChangesShow(*IdentityAt(folder / name));
        return folder / name;
    }

    std::optional<CTakenSong> hear(std::string const& path, bool withEnvelopes = false) {
        return HearSong(store, path, withEnvelopes, cancel);
    }

    CTempFolder folder;
    CRecordStore store{folder / "records"};
    CCancelFlag cancel;
};

} // namespace

TEST_F(SongRecallTest, WhatWasHeardIsRecalledAlike) {
    std::string const file = writeSong("a.wav");
    EXPECT_FALSE(RecallSong(store, file, false));
    std::optional<CTakenSong> const heard = hear(file);
    ASSERT_TRUE(heard);
    EXPECT_NEAR(heard->m_dTempo, 120.0, 0.05); // as the whole program is held to
    EXPECT_EQ(heard->m_tempoSource, ETempoSource::Analysis);
    // 80 beats, of which the first and the last may lie outside.
    EXPECT_NEAR(static_cast<double>(heard->m_beats.Beats().size()), 80.0, 2.0);
    std::optional<CTakenSong> const recalled = RecallSong(store, file, false);
    ASSERT_TRUE(recalled);
    EXPECT_EQ(recalled->m_beats, heard->m_beats);
    EXPECT_EQ(recalled->m_sPath, file);
}

TEST_F(SongRecallTest, AnotherFileUnderTheNameIsNotTheSong) {
    std::string const file = writeSong("a.wav");
    ASSERT_TRUE(hear(file));
    WriteWav(file, MakeClickTrack(90.0, 20.0));
    EXPECT_FALSE(RecallSong(store, file, false));
}

TEST_F(SongRecallTest, EnvelopesAreThereOnceTheyWereKeptAndStay) {
    std::string const file = writeSong("a.wav");
    ASSERT_TRUE(hear(file));
    EXPECT_FALSE(RecallSong(store, file, true));
    ASSERT_TRUE(hear(file, true));
    ASSERT_TRUE(RecallSong(store, file, true));
    ASSERT_TRUE(hear(file));
    EXPECT_TRUE(RecallSong(store, file, true));
}

TEST_F(SongRecallTest, WhatCannotBeHeardOrWasGivenUpIsNothing) {
    WriteText(folder / "b.wav", "no sound");
    EXPECT_FALSE(hear(folder / "b.wav"));
    EXPECT_FALSE(hear(folder / "missing.wav"));
    std::string const file = writeSong("a.wav");
    cancel.Set();
    EXPECT_FALSE(hear(file));
    EXPECT_FALSE(RecallSong(store, file, false));
}
