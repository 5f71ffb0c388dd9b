// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include "Language.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>

TEST(TextsTest, EveryReasonForATempoThatIsNotStoredHasWords) {
    for (int i = 1; i < kWriteProblems; ++i) {
        CRowState row;
        row.m_writeProblem = static_cast<EWriteProblem>(i);
        QString const text = NoteText(row);
        EXPECT_EQ(ProblemText(row),
                  row.m_writeProblem == EWriteProblem::OtherExtension ? QString() : text);
        EXPECT_TRUE(text.startsWith("Tempo not stored: ")) << i;
        EXPECT_GT(text.size(), QString("Tempo not stored: ").size()) << i;
    }
    EXPECT_EQ(NoteText({}), "");
    EXPECT_EQ(ProblemText({}), "");
}

TEST(TextsTest, NoReasonSharesItsWordsAndAllAreTranslated) {
    std::set<std::string> english;
    std::set<std::string> german;
    for (int i = 1; i < kWriteProblems; ++i) {
        CRowState row;
        row.m_writeProblem = static_cast<EWriteProblem>(i);
        std::string const plain = NoteText(row).toStdString();
        CLanguage const language(QLocale(QLocale::German, QLocale::Germany));
        std::string const translated = NoteText(row).toStdString();
        std::string_view const reason = std::string_view(plain).substr(plain.find(": "));
        EXPECT_TRUE(english.insert(plain).second) << plain;
        EXPECT_TRUE(german.insert(translated).second) << translated;
        EXPECT_EQ(translated.find(reason), std::string::npos) << translated;
    }
}

TEST(TextsTest, ReasonsArePartsOfASentenceInTheUsersLanguage) {
    CRowState row;
    row.m_sFailure = "is not an audio file that can be read (Invalid data)";
    row.m_sDamage = "is damaged: 3 of 1200 packets can't be decoded, and it breaks off";
    row.m_writeProblem = EWriteProblem::DiskFull;
    {
        CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
        EXPECT_EQ(ProblemText(row).toStdString(),
                  "No tempo: it is not an audio file that can be read (Invalid data); "
                  "Analyzed in part: the file is damaged, 3 of 1200 packets can't be decoded, "
                  "and it breaks off; Tempo not stored: the disk is full");
    }
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(
        ProblemText(row).toStdString(),
        "Kein Tempo: es ist keine lesbare Audiodatei (Invalid data); "
        "Teilweise analysiert: die Datei ist beschädigt, 3 von 1200 Paketen lassen sich nicht "
        "dekodieren, und sie bricht ab; Tempo nicht gespeichert: der Datenträger ist voll");
    row.m_sFailure = "No such file or directory"; // the system's own words
    row.m_sDamage.clear();
    row.m_writeProblem = EWriteProblem::None;
    EXPECT_EQ(ProblemText(row).toStdString(), "Kein Tempo: No such file or directory");
}

TEST(TextsTest, TheFileNameIsWhatFollowsTheLastSlash) {
    EXPECT_EQ(FileNameOf("/music/a.mp3"), "a.mp3");
    EXPECT_EQ(FileNameOf("a.mp3"), "a.mp3");
}

TEST(TextsTest, AToolTipShowsMarkUpAsItIs) {
    EXPECT_EQ(PlainTip("<b>a</b> & <i>").toStdString(),
              "<qt style='white-space: pre-wrap'>&lt;b&gt;a&lt;/b&gt; &amp; &lt;i&gt;</qt>");
}
