// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include "Language.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>
#include <vector>

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

TEST(TextsTest, IdsThatGotOtherNamesAreTold) {
    CRowState row;
    row.m_vConverted = {{"GP1", "GRP1"}, {"TST", "TSOT"}};
    EXPECT_TRUE(NoteText(row).endsWith(": GP1 → GRP1, TST → TSOT")) << NoteText(row).toStdString();
    EXPECT_EQ(ProblemText(row), "");
    CLanguage const language(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_TRUE(NoteText(row).startsWith("Ihr Tag ")) << NoteText(row).toStdString();
}

struct TextsInLanguageTest : testing::TestWithParam<QLocale::Language> {};

TEST_P(TextsInLanguageTest, NoReasonSharesItsWordsAndAllAreTranslated) {
    std::set<std::string> english;
    std::set<std::string> other;
    for (int i = 1; i < kWriteProblems; ++i) {
        CRowState row;
        row.m_writeProblem = static_cast<EWriteProblem>(i);
        std::string const plain = NoteText(row).toStdString();
        CLanguage const language{QLocale(GetParam())};
        std::string const translated = NoteText(row).toStdString();
        std::string_view const reason = std::string_view(plain).substr(plain.find(": "));
        EXPECT_TRUE(english.insert(plain).second) << plain;
        EXPECT_TRUE(other.insert(translated).second) << translated;
        EXPECT_EQ(translated.find(reason), std::string::npos) << translated;
    }
}

TEST_P(TextsInLanguageTest, EveryReasonForNoTempoHasWordsAndATranslation) {
    std::vector<CRowState> rows;
    for (int i = 1; i < kDecodeProblems; ++i) {
        CRowState& row = rows.emplace_back();
        row.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
        row.m_outcome.m_report.m_problem = static_cast<EDecodeProblem>(i);
    }
    for (int i = 1; i < kAnalysisProblems; ++i) {
        if (static_cast<EAnalysisProblem>(i) != EAnalysisProblem::NotDecoded) {
            rows.emplace_back().m_outcome.m_problem = static_cast<EAnalysisProblem>(i);
        }
    }
    for (CRowState const& row : rows) {
        auto const number = static_cast<int>(row.m_outcome.m_report.m_problem);
        std::string english;
        {
            CLanguage const language(QLocale(QLocale::English, QLocale::UnitedStates));
            english = ProblemText(row).toStdString();
        }
        ASSERT_TRUE(english.starts_with("No tempo: ")) << number;
        std::string const words = english.substr(std::string("No tempo: ").size());
        EXPECT_NE(words, "") << number;
        CLanguage const language{QLocale(GetParam())};
        std::string const translated = ProblemText(row).toStdString();
        std::string const start =
            QCoreApplication::translate("Texts", "No tempo: %1").arg(QString()).toStdString();
        EXPECT_NE(start, "No tempo: ");
        EXPECT_TRUE(translated.starts_with(start)) << translated;
        if (row.m_outcome.m_report.m_problem != EDecodeProblem::SystemError) {
            EXPECT_FALSE(translated.ends_with(words)) << translated;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, TextsInLanguageTest,
                         testing::Values(QLocale::Arabic, QLocale::German));

TEST(TextsTest, ReasonsArePartsOfASentenceInTheUsersLanguage) {
    CRowState row;
    row.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    row.m_outcome.m_report.m_nBadPackets = 3;
    row.m_outcome.m_report.m_nPackets = 1200;
    row.m_outcome.m_report.m_bBreaksOff = true;
    row.m_writeProblem = EWriteProblem::DiskFull;
    {
        CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
        EXPECT_EQ(ProblemText(row).toStdString(),
                  "No tempo: no beat was found in it; "
                  "Analyzed in part: the file is damaged, 3 of 1,200 packets can't be decoded, "
                  "and it breaks off");
    }
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(
        ProblemText(row).toStdString(),
        "Kein Tempo: es wurde kein Schlag gefunden; "
        "Teilweise analysiert: die Datei ist beschädigt, 3 von 1.200 Paketen lassen sich nicht "
        "dekodieren, und sie bricht ab");
    row.m_outcome.m_problem = EAnalysisProblem::None;
    EXPECT_EQ(
        ProblemText(row).toStdString(),
        "Teilweise analysiert: die Datei ist beschädigt, 3 von 1.200 Paketen lassen sich nicht "
        "dekodieren, und sie bricht ab; Tempo nicht gespeichert: der Datenträger ist voll");
}

TEST(TextsTest, AFailedFileHasOneComplaint) {
    CRowState row;
    row.m_outcome.m_problem = EAnalysisProblem::NoThread;
    row.m_writeProblem = EWriteProblem::DiskFull;
    EXPECT_EQ(ProblemText(row).toStdString(), "No tempo: no thread could be started");
}

TEST(TextsTest, ADeletedFileIsGone) {
    CRowState row;
    row.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    row.m_outcome.m_report.m_problem = EDecodeProblem::SystemError;
    row.m_outcome.m_report.m_nError = ENOENT;
    EXPECT_EQ(ProblemText(row).toStdString(), "No tempo: the file is gone");
}

TEST(TextsTest, TheSystemsOwnWordsStay) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    CRowState row;
    row.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    row.m_outcome.m_report.m_problem = EDecodeProblem::SystemError;
    row.m_outcome.m_report.m_nError = EACCES;
    EXPECT_EQ(ProblemText(row).toStdString(), "Kein Tempo: Permission denied");
}

TEST(TextsTest, AnEarlyEndIsToldInTheUsersNumbers) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    CRowState row;
    row.m_outcome.m_report.m_dPromisedSeconds = 12.0;
    row.m_outcome.m_report.m_dHeardSeconds = 11.7;
    EXPECT_EQ(ProblemText(row).toStdString(),
              "Teilweise analysiert: die Datei endet zu früh, nach 11,7 von 12,0 Sekunden");
    row.m_outcome.m_report.m_nBadPackets = 1;
    row.m_outcome.m_report.m_nPackets = 2;
    EXPECT_EQ(ProblemText(row).toStdString(),
              "Teilweise analysiert: die Datei ist beschädigt, 1 von 2 Paketen lassen sich nicht "
              "dekodieren, und sie endet zu früh, nach 11,7 von 12,0 Sekunden");
}

TEST(TextsTest, ADamagedFileThatCouldNotBeDecodedHasOneReason) {
    CRowState row;
    row.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    row.m_outcome.m_report.m_problem = EDecodeProblem::Changed;
    row.m_outcome.m_report.m_nBadPackets = 1;
    EXPECT_EQ(ProblemText(row).toStdString(), "No tempo: the file changed while it was read");
}

TEST(TextsTest, NamesAreHeldTogetherWhereScriptsOfTwoDirectionsMeet) {
    EXPECT_EQ(Isolated("a.mp3"), "a.mp3");
    EXPECT_EQ(Isolated("أغنية.mp3"), QStringLiteral("\u2068أغنية.mp3\u2069"));
    EXPECT_EQ(LeftToRight("8A"), "8A");
    EXPECT_EQ(JoinedFacts({"a", "", "b"}), "a · b");
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Isolated("a.mp3"), QStringLiteral("\u2068a.mp3\u2069"));
    EXPECT_EQ(Isolated(""), "");
    EXPECT_EQ(LeftToRight("8A"), QStringLiteral("\u20668A\u2069"));
    EXPECT_EQ(ShortcutText(Qt::CTRL | Qt::Key_Comma), QStringLiteral("\u2066Ctrl+,\u2069"));
    EXPECT_EQ(WithCommas({"a", "b"}), QStringLiteral("a، b"));
    EXPECT_EQ(WithSemicolons({"a", "b"}), QStringLiteral("a؛ b"));
}

TEST(TextsTest, TheFileNameIsWhatFollowsTheLastSlash) {
    EXPECT_EQ(FileNameOf("/music/a.mp3"), "a.mp3");
    EXPECT_EQ(FileNameOf("a.mp3"), "a.mp3");
}

TEST(TextsTest, AToolTipShowsMarkUpAsItIs) {
    EXPECT_EQ(PlainTip("<b>a</b> & <i>").toStdString(),
              "<qt style='white-space: pre-wrap'>&lt;b&gt;a&lt;/b&gt; &amp; &lt;i&gt;</qt>");
}
