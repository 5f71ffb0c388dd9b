// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "CommandTest.h"

#include "cli/ReviewReport.h"

#include <gmock/gmock.h>

// The program from outside: the readings of a tempo.

namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class CandidatesTest : public CCommandTest {
protected:
    /// A click on every beat, long enough for its own tempo to count.
    void WriteClicks(std::string const& name, double bpm) {
        WriteWav(m_folder / name, MakeClickTrack(bpm, 35.0));
    }
};

TEST_F(CandidatesTest, NextReadingHasAColumnWhenAsked) {
    WriteClicks("a.wav", 120.0);
    CProcessResult const plain = Tactus({"analyze", "a.wav"});
    EXPECT_THAT(plain.m_sOut, Not(HasSubstr("  Or")));
    CProcessResult const asked = Tactus({"analyze", "--candidates", "a.wav"});
    EXPECT_THAT(asked.m_sOut, ContainsRegex("Source    Or\n"));
    EXPECT_THAT(asked.m_sOut, ContainsRegex("analysis  [0-9.]+ ([(][1-4]:[1-3][)] )?0[.][0-9]+\n"));
    CProcessResult const json = Tactus({"analyze", "--candidates", "--format", "jsonl", "a.wav"});
    EXPECT_THAT(json.m_sOut,
                ContainsRegex("\"candidates\":.[{]\"bpm\":[0-9.]+,\"ratio\":(null|\"[1-4]:[1-3]\"),"
                              "\"score\":0[.][0-9]+[}]"));
    EXPECT_THAT(json.m_sOut, ContainsRegex("\"confidence\":[0-9.]+[}]\n$"));
    // What is remembered says the same.
    EXPECT_EQ(Tactus({"analyze", "--candidates", "--format", "jsonl", "a.wav"}).m_sOut,
              json.m_sOut);
    EXPECT_EQ(
        Tactus({"analyze", "--candidates", "--no-cache", "--format", "jsonl", "a.wav"}).m_sOut,
        json.m_sOut);
}

TEST_F(CandidatesTest, RangeFoldsByOctaves) {
    WriteClicks("a.wav", 120.0);
    CProcessResult const slow = Tactus({"analyze", "--range", "40:80", "--format", "csv", "a.wav"});
    EXPECT_THAT(slow.m_sOut, ContainsRegex("\na.wav,a.wav,,(60.0|59.9)[0-9],analysis,"));
    CProcessResult const fast =
        Tactus({"analyze", "--range", "150:300", "--format", "csv", "a.wav"});
    EXPECT_THAT(fast.m_sOut, ContainsRegex("\na.wav,a.wav,,(240.0|239.9)[0-9],analysis,"));
    for (char const* const range : {"70:139", "70", ":", "a:b", "0:100", "70:180x", "180:70"}) {
        EXPECT_EQ(Tactus({"analyze", "--range", range, "a.wav"}).m_nExit, 2) << range;
    }
}

TEST_F(CandidatesTest, LikelyOctaveIsTheFirstCandidate) {
    WriteClicks("a.wav", 120.0);
    CProcessResult const likely =
        Tactus({"analyze", "--octave", "likely", "--candidates", "--format", "jsonl", "a.wav"});
    std::string const& row = likely.m_sOut;
    std::string const tempo = row.substr(row.find("\"tempo\":") + 8, 6);
    std::string const first = row.substr(row.find("\"bpm\":") + 6, 3);
    EXPECT_EQ(tempo.substr(0, 2), first.substr(0, 2)) << row;
    EXPECT_EQ(Tactus({"analyze", "--octave", "odd", "a.wav"}).m_nExit, 2);
}

/// Takes note of the paths that come.
class CPathsReport final : public IReport {
public:
    explicit CPathsReport(std::vector<std::string>& paths) : m_vPaths(paths) {}
    bool Add(CReportRow const& row) override {
        m_vPaths.push_back(row.m_sPath);
        return true;
    }
    bool End() override { return true; }

private:
    std::vector<std::string>& m_vPaths;
};

CReportRow Row(std::string const& path, float reported, float other) {
    CReportRow row;
    row.m_sPath = path;
    row.m_candidates.m_vCandidates = {{120.0f, 1, 1, reported}, {240.0f, 2, 1, other}};
    if (other > reported) {
        std::swap(row.m_candidates.m_vCandidates[0], row.m_candidates.m_vCandidates[1]);
    }
    return row;
}

TEST(ReviewReportTest, LikelyMistakesComeFirstAndSafeRowsNotAtAll) {
    std::vector<std::string> paths;
    CReviewReport review(std::make_unique<CPathsReport>(paths));
    EXPECT_TRUE(review.Add(Row("safe", 0.9f, 0.1f)));
    EXPECT_TRUE(review.Add(Row("close", 0.6f, 0.4f)));
    EXPECT_TRUE(review.Add(Row("wrong", 0.2f, 0.8f)));
    EXPECT_TRUE(review.Add(Row("half", 0.5f, 0.25f)));
    EXPECT_TRUE(review.Add(CReportRow()));
    EXPECT_TRUE(paths.empty());
    EXPECT_TRUE(review.End());
    EXPECT_THAT(paths, ElementsAre("wrong", "close", "half"));
}

} // namespace
