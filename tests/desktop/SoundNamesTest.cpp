// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SoundNames.h"

#include <gtest/gtest.h>

// Camelot's wheel: A minor and C major, which share their notes, are 8A and 8B; one fifth up is one
// more.
TEST(SoundNamesTest, KeysOfTagsHaveTheirCamelotCodes) {
    EXPECT_EQ(CamelotName("Am"), "8A");
    EXPECT_EQ(CamelotName("C"), "8B");
    EXPECT_EQ(CamelotName("Em"), "9A");
    EXPECT_EQ(CamelotName("F#"), "2B");
    EXPECT_EQ(CamelotName("Ebm"), "2A");
    EXPECT_EQ(CamelotName(""), "");
    EXPECT_EQ(CamelotName("H"), "");
}

TEST(SoundNamesTest, TheDecoderTellsWhatAnMp4FileHolds) {
    CDecodeReport report;
    EXPECT_EQ(KindName(report), "");
    report.m_container = EContainer::Mp4;
    EXPECT_EQ(KindName(report), "AAC");
    report.m_sDecoder = "alac";
    EXPECT_EQ(KindName(report), "ALAC");
}
