// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Report.h"

#include "cli/TableReport.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

CReportRow Analysed(std::string path, std::string title, std::string artist, double tempo) {
    CReportRow row;
    row.m_sPath = std::move(path);
    row.m_sTitle = std::move(title);
    row.m_sArtist = std::move(artist);
    row.m_dTempo = tempo;
    row.m_source = ETempoSource::Analysis;
    return row;
}

CReportRow Failed(std::string path, std::string reason) {
    CReportRow row;
    row.m_sPath = path;
    row.m_sTitle = std::move(path);
    row.m_sError = std::move(reason);
    return row;
}

class ReportTest : public testing::Test {
protected:
    std::string Write(EReportFormat format, std::vector<CReportRow> const& rows) {
        COutput output;
        EXPECT_EQ(output.Open(m_folder / "out"), 0);
        auto const report = MakeReport(format, output);
        return Finish(*report, output, rows);
    }

    std::string WriteTable(std::size_t width, bool isBold, std::vector<CReportRow> const& rows) {
        COutput output;
        EXPECT_EQ(output.Open(m_folder / "out"), 0);
        CTableReport report(output, width, isBold);
        return Finish(report, output, rows);
    }

    std::string Finish(IReport& report, COutput& output, std::vector<CReportRow> const& rows) {
        for (CReportRow const& row : rows) {
            EXPECT_TRUE(report.Add(row));
        }
        EXPECT_TRUE(report.End());
        EXPECT_TRUE(output.Finish());
        return ReadText(m_folder / "out");
    }

    CTempFolder m_folder;
};

TEST_F(ReportTest, TempoHasTwoDecimals) {
    EXPECT_EQ(FiniteTempoText(128.0), "128.00");
    EXPECT_EQ(FiniteTempoText(99.999), "100.00");
    EXPECT_EQ(FiniteTempoText(0.0), "0.00");
    EXPECT_EQ(FiniteTempoText(std::nullopt), std::nullopt);
    EXPECT_EQ(FiniteTempoText(std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(FiniteTempoText(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(FiniteTempoText(std::numeric_limits<double>::max())->size(),
              312U); // 309 digits, "." and 2
}

TEST_F(ReportTest, TableAlignsItsColumns) {
    EXPECT_EQ(WriteTable(0, false,
                         {Analysed("a.mp3", "Song", "Someone", 128.0),
                          Analysed("longer.wav", "\xC3\x89t\xC3\xA9", "", 82.5),
                          Failed("b.wav", "is empty")}),
              "Path        Title  Artist    Tempo  Source\n"
              "a.mp3       Song   Someone  128.00  analysis\n"
              "longer.wav  \xC3\x89t\xC3\xA9              82.50  analysis\n"
              "b.wav       b.wav                -  failed\n");
}

TEST_F(ReportTest, TableKeepsToTheTerminal) {
    // 6 + 8 cells for tempo and source and 8 for the gaps leave 18 for the texts.
    std::string const table =
        WriteTable(40, false, {Analysed("/music/song.mp3", "A long title", "Artist", 100.0)});
    EXPECT_EQ(table, "Path    Title   Artist   Tempo  Source\n"
                     "\xE2\x80\xA6g.mp3  A lon\xE2\x80\xA6  Artist  100.00  analysis\n");
}

TEST_F(ReportTest, TableHeadingsAreBoldWhereThatIsWelcome) {
    EXPECT_EQ(WriteTable(80, true, {Analysed("a", "b", "c", 100.0)}),
              "\x1B[1mPath  Title  Artist   Tempo  Source\x1B[0m\n"
              "a     b      c       100.00  analysis\n");
}

TEST_F(ReportTest, TableOfNothingIsNothing) {
    EXPECT_EQ(WriteTable(80, true, {}), "");
}

TEST_F(ReportTest, TableTellsWhatWasStored) {
    CReportRow stored = Analysed("a", "b", "c", 100.0);
    stored.m_writing = EWriting::Stored;
    CReportRow refused = stored;
    refused.m_writing = EWriting::NotStored;
    refused.m_bRefused = true;
    CReportRow other = refused;
    other.m_bRefused = false;
    EXPECT_EQ(WriteTable(0, false, {stored, refused, other}),
              "Path  Title  Artist   Tempo  Source\n"
              "a     b      c       100.00  analysis, stored\n"
              "a     b      c       100.00  analysis, not stored\n"
              "a     b      c       100.00  analysis\n");
}

TEST_F(ReportTest, TableTellsWhatFollowsFromALength) {
    CReportRow clip = Analysed("a", "b", "c", 100.0);
    clip.m_source = ETempoSource::Length;
    CReportRow left = clip;
    left.m_writing = EWriting::NotStored;
    left.m_bTooShort = true;
    EXPECT_EQ(WriteTable(0, false, {clip, left}),
              "Path  Title  Artist   Tempo  Source\n"
              "a     b      c       100.00  length\n"
              "a     b      c       100.00  length, not stored\n");
    EXPECT_THAT(Write(EReportFormat::Csv, {clip}),
                testing::HasSubstr("\na,b,c,100.00,length,,,,,,,,,,,\n"));
    EXPECT_THAT(Write(EReportFormat::JsonLines, {clip}),
                testing::HasSubstr(R"("source":"length")"));
}

TEST_F(ReportTest, ReadingsAndKeyAreToldOnRequest) {
    CReportRow row = Analysed("a", "b", "c", 120.0);
    row.m_candidates = {.m_vCandidates = {{120.0f, 1, 1, 0.75f}, {87.5f, 0, 0, 0.25f}},
                        .m_fConfidence = 0.5f};
    row.m_harmony = CHarmony{.m_eMode = EKeyMode::Minor, .m_nTonic = 9, .m_fConfidence = 0.25f};
    CReportRow none = Analysed("d", "e", "f", 120.0);
    none.m_harmony = CHarmony();
    COutput output;
    EXPECT_EQ(output.Open(m_folder / "out"), 0);
    CTableReport report(output, 0, false, {.m_bOther = true, .m_bHarmony = true});
    EXPECT_EQ(Finish(report, output, {row, none}),
              "Path  Title  Artist   Tempo  Source    Or          Key\n"
              "a     b      c       120.00  analysis  87.50 0.25  Am 8A 1m\n"
              "d     e      f       120.00  analysis\n");
    EXPECT_THAT(Write(EReportFormat::Csv, {row, none}),
                testing::HasSubstr(
                    "\na,b,c,120.00,analysis,,,,,,,120.00 (1:1) 0.75; 87.50 0.25,0.5,Am,8A,1m\n"
                    "d,e,f,120.00,analysis,,,,,,,,,,,\n"));
    std::string const json = Write(EReportFormat::JsonLines, {row, none});
    EXPECT_THAT(json, testing::HasSubstr(R"("harmony":{"plain":"Am","camelot":"8A","openKey":"1m",)"
                                         R"("confidence":0.25,"tuning":0}})"));
    EXPECT_THAT(json, testing::HasSubstr(R"("harmony":null})"));
}

TEST_F(ReportTest, ATempoFromATagThatIsNoPlainOneIsMarked) {
    CReportRow row = Analysed("a", "b", "c", 128.0);
    row.m_source = ETempoSource::Tag;
    row.m_sAlbum = "X, Y";
    row.m_sTagKey = "Am";
    std::vector<CReportRow> rows(3, row);
    rows[0].m_tagTempo = ETagTempo::TimesTen;
    rows[1].m_tagTempo = ETagTempo::TimesHundred;
    rows[2].m_tagTempo = ETagTempo::Unlikely;
    EXPECT_EQ(WriteTable(0, false, rows), "Path  Title  Artist    Tempo  Source\n"
                                          "a     b      c        128.00  tag, times 10 there\n"
                                          "a     b      c        128.00  tag, times 100 there\n"
                                          "a     b      c       128.00?  tag, unlikely\n");
    EXPECT_THAT(Write(EReportFormat::Csv, rows),
                testing::HasSubstr("a,b,c,128.00,tag,,,,\"X, Y\",Am,times10,,,,,\n"
                                   "a,b,c,128.00,tag,,,,\"X, Y\",Am,times100,,,,,\n"
                                   "a,b,c,128.00,tag,,,,\"X, Y\",Am,unlikely,,,,,\n"));
    EXPECT_THAT(Write(EReportFormat::JsonLines, rows),
                testing::HasSubstr(R"("album":"X, Y","tagKey":"Am","tempoNote":"times10",)"));
}

TEST_F(ReportTest, TableShowsNoControlCharacters) {
    std::string const table = WriteTable(0, false, {Analysed("a\x1B[2J\n", "t\r", "", 1.0)});
    EXPECT_EQ(table.find('\x1B'), std::string::npos);
    EXPECT_EQ(table.find('\r'), std::string::npos);
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 2);
}

TEST_F(ReportTest, CsvQuotesWhatNeedsIt) {
    EXPECT_EQ(Write(EReportFormat::Csv, {Analysed("a,b.mp3", "Say \"hi\"", "x\ny", 120.5),
                                         Failed("c\xFF.wav", "is empty")}),
              "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
              "candidates,confidence,harmony,camelot,openKey\n"
              "\"a,b.mp3\",\"Say \"\"hi\"\"\",\"x\ny\",120.50,analysis,,,,,,,,,,,\n"
              "c\xFF.wav,c\xFF.wav,,,,is empty,,,,,,,,,,\n");
    EXPECT_EQ(Write(EReportFormat::Csv, {}),
              "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
              "candidates,confidence,harmony,camelot,openKey\n");
}

TEST_F(ReportTest, JsonIsAnArrayOfRows) {
    CReportRow tagged = Analysed("a.mp3", "T", "A", 128.0);
    tagged.m_source = ETempoSource::Tag;
    EXPECT_EQ(
        Write(EReportFormat::Json, {tagged, Failed("b.wav", "no")}),
        "[\n"
        R"({"path":"a.mp3","title":"T","artist":"A","tempo":128.00,"source":"tag","error":null,"written":null,"notWritten":null,"album":"","tagKey":null,"tempoNote":null,"before":null,"setBy":null,"plan":null})"
        ",\n"
        R"({"path":"b.wav","title":"b.wav","artist":"","tempo":null,"source":null,"error":"no","written":null,"notWritten":null,"album":"","tagKey":null,"tempoNote":null,"before":null,"setBy":null,"plan":null})"
        "\n]\n");
    EXPECT_EQ(Write(EReportFormat::Json, {}), "[]\n");
}

TEST_F(ReportTest, JsonLinesAreOneObjectEach) {
    EXPECT_EQ(
        Write(EReportFormat::JsonLines, {Analysed("/m/\xFF.mp3", "T", "A", 99.5)}),
        R"({"path":"/m/)"
        "\xEF\xBF\xBD"
        R"(.mp3","uri":"file:///m/%FF.mp3","title":"T","artist":"A","tempo":99.50,"source":"analysis","error":null,"written":null,"notWritten":null,"album":"","tagKey":null,"tempoNote":null,"before":null,"setBy":null,"plan":null})"
        "\n");
    EXPECT_EQ(Write(EReportFormat::JsonLines, {}), "");
}

TEST_F(ReportTest, FullDiskIsNoticed) {
    COutput output;
    ASSERT_EQ(output.Open("/dev/full"), 0);
    auto const report = MakeReport(EReportFormat::Csv, output);
    report->Add(Failed("a", "b"));
    report->End();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(output.Finish());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tactus: /dev/full: can't be written: No space left on device\n");
}

} // namespace
