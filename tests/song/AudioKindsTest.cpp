// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/AudioKinds.h"

#include "base/CString.h"

#include <gtest/gtest.h>
#include <string>

TEST(AudioKindsTest, ListedExtensionsAreThoseOfTheWindow) {
    EXPECT_EQ(ListedExtensions().ToUtf8(), "wav;mp3;aiff;aif;caf;m4a");
}

TEST(AudioKindsTest, CaseOfTheExtensionDoesNotMatter) {
    ASSERT_NE(FindAudioKind(CString("/music/SONG.Mp3")), nullptr);
    EXPECT_EQ(FindAudioKind(CString("/music/SONG.Mp3"))->m_sExtension, "mp3");
}

TEST(AudioKindsTest, PartOfAnExtensionIsNoKind) {
    for (char const* name : {"a.if", "a.m4", "a.mp", "a.aif;caf", "a", "mp3", "a.mp3.txt", ""}) {
        EXPECT_EQ(FindAudioKind(CString(name)), nullptr) << name;
    }
}

TEST(AudioKindsTest, OnlyMp3FilesAreWritten) {
    for (CAudioKind const& kind : AudioKinds()) {
        EXPECT_EQ(kind.m_writing == ETagWriting::Id3, kind.m_sExtension == "mp3");
    }
}
