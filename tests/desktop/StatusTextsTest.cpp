// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/StatusTexts.h"

#include "Language.h"

#include <gtest/gtest.h>

namespace {

std::string Activity(CBatchStatus const& status, std::size_t problems = 0) {
    return ActivityText(status, problems).toStdString();
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

TEST(StatusTextsTest, RowsAreCountedInEnglishPlurals) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CBatchStatus status;
    EXPECT_EQ(Activity(status), "No files");
    status.m_nRows = 1;
    EXPECT_EQ(Activity(status), "1 file");
    status.m_nRows = 3;
    EXPECT_EQ(Activity(status), "3 files");
    status.m_nUndone = 2;
    EXPECT_EQ(Activity(status), "3 files · 2 to do");
}

TEST(StatusTextsTest, ProblemsAreCountedBesideTheFilesWhateverGoesOn) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CBatchStatus status;
    status.m_nRows = 9;
    EXPECT_EQ(Activity(status, 6), "9 files · 6 problems");
    EXPECT_EQ(Activity(status, 1), "9 files · 1 problem");
    EXPECT_EQ(Activity(Running(5, 5, 0), 2), "Analyzing “a.mp3” · 1 of 5 · 2 problems");
}

TEST(StatusTextsTest, ALanguageWithoutTranslationGetsEnglish) {
    CLanguage const other{QLocale(QLocale::Icelandic)};
    CBatchStatus status;
    status.m_nRows = 1;
    EXPECT_EQ(Activity(status), "1 file");
}

TEST(StatusTextsTest, GermanIsShipped) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    CBatchStatus status;
    status.m_nRows = 3;
    status.m_nUndone = 1;
    EXPECT_EQ(Activity(status, 2), "3 Dateien · 1 zu tun · 2 Probleme");
    EXPECT_EQ(QCoreApplication::translate("BpmWindow", "Add").toStdString(), "Hinzufügen");
}

TEST(StatusTextsTest, OneLineHasOneKindOfDigits) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    CBatchStatus status = Running(4'995, 5'000, 0);
    // Arabic-Indic digits: U+0660 is zero; U+066C groups thousands.
    EXPECT_TRUE(Activity(status).find("٦ من ٥٬٠٠٠") != std::string::npos) << Activity(status);
    status.m_bRunning = false;
    status.m_nRows = 5'000;
    status.m_nUndone = 0;
    // The mark of a direction, and isolates.
    EXPECT_EQ(Activity(status, 12), "\u200F\u2068٥٬٠٠٠ ملف\u2069 · \u2068١٢ مشكلة\u2069");
}

TEST(StatusTextsTest, ArabicIsShipped) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(SummaryText({301, 298, 3, 69'400}).toStdString(),
              "حُلِّل ٣٠١ ملف في ١ د ٩ ث، حُفظت ٢٩٨ سرعة، ٣ مشكلات");
    EXPECT_EQ(FoldersText(2, "/a").toStdString(), "تعذّرت قراءة مجلدين آخرهما «\u2068/a\u2069».");
}

// U+2068 and U+2069 hold a name together and keep it from its neighbours.
TEST(StatusTextsTest, NamesInTheOtherDirectionLeaveTheSentenceAsItIs) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CBatchStatus status = Running(5, 5, 0);
    status.m_sRunningName = u"أغنية.mp3";
    EXPECT_EQ(Activity(status), "\u2068Analyzing “\u2068أغنية.mp3\u2069”\u2069 · 1 of 5");
}

TEST(StatusTextsTest, CountsHaveTheSameGroupsEverywhere) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CBatchStatus status = Running(5'000, 5'000, 0);
    EXPECT_EQ(Activity(status), "Analyzing “a.mp3” · 1 of 5,000");
    status.m_bRunning = false;
    status.m_nRows = 5'000;
    status.m_nUndone = 0;
    EXPECT_EQ(Activity(status), "5,000 files");
}

TEST(StatusTextsTest, ARunningBatchNamesItsFileAndItsPlace) {
    EXPECT_EQ(Activity(Running(5, 5, 0)), "Analyzing “a.mp3” · 1 of 5");
    EXPECT_EQ(Activity(Running(1, 5, 0)), "Analyzing “a.mp3” · 5 of 5");
    CBatchStatus reading = Running(5, 5, 0);
    reading.m_bReading = true;
    EXPECT_EQ(Activity(reading), "Reading “a.mp3” · 1 of 5");
    CBatchStatus stopping = Running(5, 5, 0);
    stopping.m_bStopping = true;
    EXPECT_EQ(Activity(stopping), "Stopping …");
}

TEST(StatusTextsTest, OverallProgressIsThatOfTheBatch) {
    EXPECT_EQ(OverallPercent({}), 0);
    EXPECT_EQ(OverallPercent(Running(4, 4, -1)), 0);
    EXPECT_EQ(OverallPercent(Running(4, 4, 50)), 12); // (0 + 50) / 4, rounded down
    EXPECT_EQ(OverallPercent(Running(1, 4, 50)), 87); // (300 + 50) / 4
    EXPECT_EQ(OverallPercent(Running(1, 4, 100)), 100);
}

TEST(StatusTextsTest, AnAdditionTellsWhatItBroughtUnlessAllIsNew) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    auto const text = [](std::size_t added, std::size_t known, CWishes const& wishes = {}) {
        return AddedText(added, known, {"album"}, wishes).toStdString();
    };
    EXPECT_EQ(text(12, 7), "12 added, 7 already in the list.");
    EXPECT_EQ(text(0, 7), "Nothing added: 7 already in the list.");
    EXPECT_EQ(text(12, 0), "");
    EXPECT_EQ(text(0, 0), "Nothing added: no music in “album” (wav, mp3, aiff, aif, caf, m4a).");
    EXPECT_EQ(text(0, 0, {.m_bOtherKinds = true}), "Nothing added: no music in “album”.");
}

TEST(StatusTextsTest, UnreadableFoldersAreCountedAndTheLastIsNamed) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(FoldersText(1, "/a").toStdString(), "The folder “/a” could not be read.");
    EXPECT_EQ(FoldersText(3, "/c").toStdString(),
              "3 folders could not be read, the last of them “/c”.");
}

TEST(StatusTextsTest, FilesThatWereLeftOutAreCountedByKindTheMostFirst) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(LeftOutText({"/m/a.ogg", "/m/b.FLAC", "/m/c.flac"}),
              "3 files of other kinds were left out (flac 2, ogg 1).");
    EXPECT_EQ(LeftOutText({"/m/a.ogg"}), "1 file of another kind was left out (ogg 1).");
}

TEST(StatusTextsTest, ARunIsSummedUpWithItsTime) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(SummaryText({301, 298, 3, 69'400}),
              "301 analyzed in 1 min 9 s, 298 stored, 3 problems");
    EXPECT_EQ(SummaryText({1, 0, 0, 20}), "1 analyzed in 1 s, 0 stored");
    EXPECT_EQ(SummaryText({2000, 2000, 1, 3'720'000}),
              "2,000 analyzed in 1 h 2 min, 2,000 stored, 1 problem");
}
