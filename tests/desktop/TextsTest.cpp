// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include "desktop/Translation.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>
#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>

namespace {

/// Texts of one language, taken away again at the end.
class CLanguage {
public:
    explicit CLanguage(QLocale const& locale) {
        QLocale::setDefault(locale);
        InstallTranslations(*qApp, locale);
    }
    ~CLanguage() {
        for (QTranslator* translator : qApp->findChildren<QTranslator*>()) {
            delete translator;
        }
        QLocale::setDefault(m_before);
    }
    CLanguage(CLanguage const&) = delete;
    CLanguage& operator=(CLanguage const&) = delete;

private:
    QLocale m_before;
};

std::string Activity(CBatchStatus const& status) {
    return ActivityText(status).toStdString();
}

CBatchStatus Running(std::size_t undone, std::size_t files, int percent) {
    CBatchStatus status;
    status.m_bRunning = true;
    status.m_nRows = 10;
    status.m_nUndone = undone;
    status.m_nBatchFiles = files;
    status.m_nBatchPlace = files - undone + 1;
    status.m_nPercent = percent;
    status.m_sRunningName = u"a.mp3";
    return status;
}

} // namespace

TEST(TextsTest, RowsAreCountedInEnglishPlurals) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CBatchStatus status;
    EXPECT_EQ(Activity(status), "No files");
    status.m_nRows = 1;
    EXPECT_EQ(Activity(status), "1 file");
    status.m_nRows = 3;
    EXPECT_EQ(Activity(status), "3 files");
    status.m_nUndone = 2;
    EXPECT_EQ(Activity(status), "3 files, 2 not analyzed");
}

TEST(TextsTest, ALanguageWithoutTranslationGetsEnglish) {
    CLanguage const other(QLocale(QLocale::Icelandic));
    CBatchStatus status;
    status.m_nRows = 1;
    EXPECT_EQ(Activity(status), "1 file");
}

TEST(TextsTest, GermanIsShipped) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    CBatchStatus status;
    status.m_nRows = 3;
    status.m_nUndone = 1;
    EXPECT_EQ(Activity(status), "3 Dateien, 1 nicht analysiert");
    EXPECT_EQ(QCoreApplication::translate("BpmWindow", "Add").toStdString(), "Hinzufügen");
}

TEST(TextsTest, ARunningBatchNamesItsFileAndItsPlace) {
    EXPECT_EQ(Activity(Running(5, 5, 0)), "Analyzing a.mp3 (1 of 5)");
    EXPECT_EQ(Activity(Running(1, 5, 0)), "Analyzing a.mp3 (5 of 5)");
    CBatchStatus stopping = Running(5, 5, 0);
    stopping.m_bStopping = true;
    EXPECT_EQ(Activity(stopping), "Stopping …");
}

TEST(TextsTest, OverallProgressIsThatOfTheBatch) {
    EXPECT_EQ(OverallPercent({}), 0);
    EXPECT_EQ(OverallPercent(Running(4, 4, -1)), 0);
    EXPECT_EQ(OverallPercent(Running(4, 4, 50)), 12); // (0 + 50) / 4, rounded down
    EXPECT_EQ(OverallPercent(Running(1, 4, 50)), 87); // (300 + 50) / 4
    EXPECT_EQ(OverallPercent(Running(1, 4, 100)), 100);
}

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

TEST(TextsTest, TempoValuesAreNumbersAboveZero) {
    EXPECT_EQ(TempoValue(u"128.05"), 128.05);
    EXPECT_EQ(TempoValue(u"97 BPM"), 97.0);
    EXPECT_TRUE(std::isnan(TempoValue(u"0.00")));
    EXPECT_TRUE(std::isnan(TempoValue(u"")));
    EXPECT_TRUE(std::isnan(TempoValue(u"fast")));
}

TEST(TextsTest, TheFileNameIsWhatFollowsTheLastSlash) {
    EXPECT_EQ(FileNameOf("/music/a.mp3"), "a.mp3");
    EXPECT_EQ(FileNameOf("a.mp3"), "a.mp3");
}
