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

/// The extensions that `choice` has, in the table's order.
std::string ChosenOf(CKindChoice const& choice) {
    std::string text;
    for (CAudioKind const& kind : AudioKinds()) {
        if (choice.Has(kind)) {
            text.append(text.empty() ? "" : " ").append(kind.m_sExtension);
        }
    }
    return text;
}

TEST(AudioKindsTest, AChoiceNamesExtensionsAndTypes) {
    CKindChoice choice;
    EXPECT_EQ(choice.Add("mp3,.FLAC,aif"), "");
    EXPECT_EQ(ChosenOf(choice), "mp3 aif flac");
    EXPECT_EQ(choice.Add("aiff,ogg"), "");
    EXPECT_EQ(ChosenOf(choice), "mp3 aiff aif aifc flac oga ogg");
}

TEST(AudioKindsTest, AChoiceTellsTheFirstWordThatIsNone) {
    for (auto const& [names, word] : std::initializer_list<std::pair<char const*, char const*>>{
             {"mp3,mp,x", "mp"}, {"jpg", "jpg"}, {"mp3,", ","}, {",mp3", ","}, {"", ","}}) {
        EXPECT_EQ(CKindChoice().Add(names), word) << names;
    }
}

TEST(AudioKindsTest, OnlyMp3FilesAreWrittenUnasked) {
    for (CAudioKind const& kind : AudioKinds()) {
        EXPECT_EQ(kind.m_writing == ETagWriting::Id3, kind.m_sExtension == "mp3");
    }
}
