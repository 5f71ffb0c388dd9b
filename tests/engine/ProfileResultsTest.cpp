// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/ProfileResults.h"

#include "base/IArchive.h"
#include "engine/envelope/ImpactPoints.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <vector>

namespace {

using Positions = std::vector<std::int64_t>;

Positions ListOf(CProfileResults::CPositions const& list) {
    return {list.begin(), list.end()};
}

/// Fade points at `positions`, one sample per second unless told otherwise.
CProfileResults Curve(std::initializer_list<std::int64_t> positions, std::uint32_t rate = 1) {
    CProfileResults results;
    for (std::int64_t const position : positions) {
        results.AddIntroFadePoint(static_cast<std::uint64_t>(position));
    }
    results.SetSampleRate(rate, rate);
    return results;
}

constexpr std::int64_t kSecond = 1000000; // microseconds

/// Attenuation at `time`, or 1 where the curve has none.
std::int32_t AttenAt(CProfileResults const& results, std::int64_t time) {
    std::int32_t atten = 1;
    return results.GetPrevSongAttenAtFilePos(time, &atten) ? atten : 1;
}

/// Time of `atten`, or -1 where the curve has none.
std::int64_t TimeOf(CProfileResults const& results, std::int32_t atten) {
    std::int64_t time = -1;
    return results.GetFilePosFromPrevSongAtten(atten, &time) ? time : -1;
}

/// A record that `IsValid`, with every field set.
CProfileResults FullRecord() {
    CProfileResults results;
    results.AddIntroBeatMixSproc(1);
    results.AddOutroBeatMixSproc(2);
    results.AddIntroFadePoint(3);
    CPfImpactPoints points(44100, 1000);
    points.AddMeasStartMark(4);
    results.AddMeasMarks(&points);
    results.SetIntroEnd(5);
    results.SetOutroStart(6);
    results.SetBpm(120.0f);
    results.SetSampleRate(44100, 44100);
    results.SetPeakLevel(0.5f);
    results.SetExtras(1.5f, 2.5f);
    results.SetSampleCount(1000);
    results.SetKey(9, 1);
    CPfBeatPattern a;
    CPfBeatPattern b;
    a.Initialize(8);
    b.Initialize(4);
    results.AddBeatPatterns(&a, &b);
    results.SetBitRate(1411200);
    results.SetText(L"text");
    return results;
}

/// Archive over a byte vector.
class CBytesArchive final : public IArchive {
public:
    explicit CBytesArchive(bool storing) : m_bStoring(storing) {}

    std::int32_t IsStoring() override { return m_bStoring ? 1 : 0; }
    void Write(void const* data, std::uint32_t length) override {
        auto const* bytes = static_cast<std::uint8_t const*>(data);
        m_vBytes.insert(m_vBytes.end(), bytes, bytes + length);
    }
    void Read(void* data, std::uint32_t length, std::int32_t) override {
        if (m_nAt + length <= m_vBytes.size()) {
            std::memcpy(data, m_vBytes.data() + m_nAt, length);
            m_nAt += length;
        }
    }

    std::vector<std::uint8_t> m_vBytes;

private:
    bool m_bStoring;
    std::size_t m_nAt = 0;
};

template <typename T>
void AppendImage(std::vector<std::uint8_t>& bytes, T value) {
    auto const* image = reinterpret_cast<std::uint8_t const*>(&value);
    bytes.insert(bytes.end(), image, image + sizeof(value));
}

} // namespace

TEST(ProfileResultsTest, StartsAtZero) {
    CProfileResults const results;
    std::uint16_t tonic = 7;
    std::uint16_t mode = 7;
    EXPECT_TRUE(results.GetKey(&tonic, &mode));
    EXPECT_EQ(tonic, 0);
    EXPECT_EQ(mode, 0);
    EXPECT_EQ(results.GetBpm(), 0.0f);
    EXPECT_EQ(results.GetSampleRate(), 0U);
    EXPECT_EQ(results.GetSampleCount(), 0);
    EXPECT_EQ(results.GetBitRate(), 0U);
    EXPECT_EQ(results.GetPeakLevel(), 0.0f);
    EXPECT_EQ(results.GetFirstExtra(), 0.0f);
    EXPECT_EQ(results.GetSecondExtra(), 0.0f);
    EXPECT_EQ(results.GetIntroEnd(), 0);
    EXPECT_EQ(results.GetOutroStart(), 0);
    EXPECT_TRUE(results.GetText().empty());
    EXPECT_TRUE(results.GetMeasMarks().IsEmpty());
    EXPECT_FALSE(results.IsValid());
}

TEST(ProfileResultsTest, AddMeasMarksReplacesTheMarks) {
    CProfileResults results = FullRecord();
    CPfImpactPoints points(44100, 1000);
    points.Add(99); // a point is no mark
    points.AddMeasStartMark(30);
    points.AddMeasStartMark(10);
    results.AddMeasMarks(&points);
    EXPECT_EQ(ListOf(results.GetMeasMarks()), (Positions{30, 10}));
    std::int64_t position = 7;
    EXPECT_TRUE(results.EnumMeasMarks(1, &position));
    EXPECT_EQ(position, 10);
    EXPECT_FALSE(results.EnumMeasMarks(2, &position));
    EXPECT_FALSE(results.EnumMeasMarks(-1, &position));
    EXPECT_EQ(position, 10);
}

TEST(ProfileResultsTest, PatternsComeBackInOrder) {
    CProfileResults const results = FullRecord();
    CPfBeatPattern a;
    CPfBeatPattern b;
    EXPECT_TRUE(results.GetBeatPatterns(&a, &b));
    EXPECT_EQ(a.GetCount(), 8);
    EXPECT_EQ(b.GetCount(), 4);
}

TEST(ProfileResultsTest, SprocketsAreOneSequenceIntroFirst) {
    CProfileResults results;
    for (std::uint64_t const position : {10U, 20U, 30U}) {
        results.AddIntroBeatMixSproc(position);
    }
    results.AddOutroBeatMixSproc(80);
    results.AddOutroBeatMixSproc(90);
    Positions const expected{10, 20, 30, 80, 90};
    for (std::uint16_t i = 0; i < 5; ++i) {
        std::int64_t position = 0;
        bool isIntro = i >= 3;
        ASSERT_TRUE(results.EnumBeatMixSprocs(i, &position, &isIntro)) << i;
        EXPECT_EQ(position, expected[i]);
        EXPECT_EQ(isIntro, i < 3);
    }
    std::int64_t position = 7;
    bool isIntro = true;
    EXPECT_FALSE(results.EnumBeatMixSprocs(5, &position, &isIntro));
    EXPECT_EQ(position, 7);
    EXPECT_TRUE(isIntro);
    results.EraseBeatMixSprocs();
    EXPECT_FALSE(results.EnumBeatMixSprocs(0, &position, &isIntro));
}

TEST(ProfileResultsTest, ThePlainMixPointsAreIntroEndAndOutroStart) {
    CProfileResults const results = FullRecord();
    std::int64_t position = 0;
    bool isIntro = false;
    EXPECT_TRUE(results.EnumStdMixSprocs(0, &position, &isIntro));
    EXPECT_EQ(position, 5);
    EXPECT_TRUE(isIntro);
    EXPECT_TRUE(results.EnumStdMixSprocs(1, &position, &isIntro));
    EXPECT_EQ(position, 6);
    EXPECT_FALSE(isIntro);
    EXPECT_FALSE(results.EnumStdMixSprocs(2, &position, &isIntro));
    EXPECT_EQ(position, 6);
}

TEST(ProfileResultsTest, ValidityNeedsTempoRateLengthAndMixPoints) {
    EXPECT_TRUE(FullRecord().IsValid());

    CProfileResults noTempo = FullRecord();
    noTempo.SetBpm(0.0f);
    EXPECT_FALSE(noTempo.IsValid());

    CProfileResults noRate = FullRecord();
    noRate.SetSampleRate(0, 44100);
    EXPECT_FALSE(noRate.IsValid());

    CProfileResults noLength = FullRecord();
    noLength.SetSampleCount(0);
    EXPECT_FALSE(noLength.IsValid());

    CProfileResults noOutro = FullRecord();
    noOutro.EraseBeatMixSprocs();
    noOutro.AddIntroBeatMixSproc(1);
    EXPECT_FALSE(noOutro.IsValid());

    CProfileResults noIntro = FullRecord();
    noIntro.EraseBeatMixSprocs();
    noIntro.AddOutroBeatMixSproc(1);
    EXPECT_FALSE(noIntro.IsValid());

    CProfileResults noMarks = FullRecord();
    CPfImpactPoints const none(44100, 0);
    noMarks.AddMeasMarks(&none);
    EXPECT_TRUE(noMarks.IsValid());

    CProfileResults noFade = Curve({}, 44100);
    noFade.SetBpm(120.0f);
    noFade.SetSampleCount(1000);
    noFade.AddIntroBeatMixSproc(1);
    noFade.AddOutroBeatMixSproc(2);
    EXPECT_FALSE(noFade.IsValid());
    noFade.AddIntroFadePoint(0);
    EXPECT_TRUE(noFade.IsValid());
}

TEST(ProfileResultsTest, PositionsTranslateWithTruncation) {
    EXPECT_EQ(CProfileResults::TranslateSamplePos(44100, 11025, 3), 12);
    EXPECT_EQ(CProfileResults::TranslateSamplePos(11025, 44100, 3), 0);
    EXPECT_EQ(CProfileResults::TranslateSamplePos(11025, 44100, -7), -1);
    EXPECT_EQ(CProfileResults::TranslateSamplePos(44100, 0, 3), 0);
    EXPECT_EQ(CProfileResults::TranslateSamplePos(0, 0, 3), 3);
    EXPECT_EQ(CProfileResults::TranslateSamplePos(48000, 44100, std::int64_t{44100} * 1000000000),
              std::int64_t{48000} * 1000000000);
}

TEST(ProfileResultsTest, ATranslationsProductWrapsAt64Bits) {
    // 2^62 * 4 = 2^64, of which 64 bits keep 0.
    EXPECT_EQ(CProfileResults::TranslateSamplePos(4, 1, std::int64_t{1} << 62), 0);
    // 2^62 * 2 = 2^63, the lowest signed number.
    EXPECT_EQ(CProfileResults::TranslateSamplePos(2, 4, std::int64_t{1} << 62),
              -(std::int64_t{1} << 61));
}

TEST(ProfileResultsTest, TheSampleRateMovesEveryPositionButTheLength) {
    CProfileResults results = FullRecord();
    results.SetSampleRate(88200, 44100);
    EXPECT_EQ(results.GetSampleRate(), 88200U);
    EXPECT_EQ(ListOf(results.GetIntroSprockets()), Positions{2});
    EXPECT_EQ(ListOf(results.GetOutroSprockets()), Positions{4});
    EXPECT_EQ(ListOf(results.GetIntroFadePoints()), Positions{6});
    EXPECT_EQ(ListOf(results.GetMeasMarks()), Positions{8});
    EXPECT_EQ(results.GetIntroEnd(), 10);
    EXPECT_EQ(results.GetOutroStart(), 12);
    EXPECT_EQ(results.GetSampleCount(), 1000);
}

TEST(ProfileResultsTest, FadesInAStraightLineBetweenPoints) {
    // Points at seconds 10, 20, 40, 60 with 0, -600, -1200, -1800.
    CProfileResults const results = Curve({10, 20, 40, 60});
    EXPECT_EQ(AttenAt(results, 0), 0);
    EXPECT_EQ(AttenAt(results, 9 * kSecond), 0);
    EXPECT_EQ(AttenAt(results, 10 * kSecond), 0);
    EXPECT_EQ(AttenAt(results, 15 * kSecond), -300);
    EXPECT_EQ(AttenAt(results, 20 * kSecond), -600);
    EXPECT_EQ(AttenAt(results, 50 * kSecond), -1500);     // halfway between points 2 and 3
    EXPECT_EQ(AttenAt(results, 27 * kSecond), -810);      // -600 + 7 * -600 / 20
    EXPECT_EQ(AttenAt(results, 60 * kSecond - 1), -1770); // 59 whole samples: -1200 - 19 * 30
    EXPECT_EQ(AttenAt(results, 60 * kSecond), 1);         // from the last point on there is none
    EXPECT_EQ(AttenAt(results, -1), 1);
}

TEST(ProfileResultsTest, OnePointOnlyFadesAheadOfIt) {
    CProfileResults const results = Curve({10});
    EXPECT_EQ(AttenAt(results, 9 * kSecond), 0);
    EXPECT_EQ(AttenAt(results, 10 * kSecond), 1);
    EXPECT_EQ(AttenAt(Curve({}), 0), 1);
}

TEST(ProfileResultsTest, FadeDistancesAreLowWords) {
    // 2^32 apart: the low word of the distance is 0, so the line is flat.
    CProfileResults const flat = Curve({0, std::int64_t{1} << 32});
    EXPECT_EQ(AttenAt(flat, 500 * kSecond), 0);
    // 8,000,000 samples in, -600 * 8e6 = -4.8e9 wraps to -505,032,704; / 1e7 = -50.
    CProfileResults const wrapped = Curve({0, 10000000});
    EXPECT_EQ(AttenAt(wrapped, 8000000 * kSecond), -50);
}

TEST(ProfileResultsTest, AttenuationsHaveATime) {
    CProfileResults const results = Curve({10, 20, 40, 60});
    EXPECT_EQ(TimeOf(results, 100), 10 * kSecond);
    EXPECT_EQ(TimeOf(results, 0), 10 * kSecond);
    EXPECT_EQ(TimeOf(results, -300), 15 * kSecond);
    EXPECT_EQ(TimeOf(results, -600), 20 * kSecond);
    EXPECT_EQ(TimeOf(results, -810), 27 * kSecond);
    EXPECT_EQ(TimeOf(results, -1), 10 * kSecond); // 10 / 600 of a sample is none
    EXPECT_EQ(TimeOf(results, -1800), 60 * kSecond);
    EXPECT_EQ(TimeOf(results, -1801), -1);
    EXPECT_EQ(TimeOf(Curve({}), 0), -1);
    EXPECT_EQ(TimeOf(Curve({10, 20}, 0), 0), -1);
    EXPECT_EQ(TimeOf(Curve({10}), -1), -1);
}

TEST(ProfileResultsTest, FadeProductsWrapBeforeTheDivision) {
    // d = 8,000,000, 300 down: 8e6 * -300 = -2.4e9 wraps to 1,894,967,296; negated and divided by
    // 600 that is -3,158,278.
    EXPECT_EQ(TimeOf(Curve({10000000, 18000000}), -300), (10000000 - 3158278) * kSecond);
}

TEST(ProfileResultsTest, PinsCurveDividesSignedOneWayAndUnsignedBack) {
    // Forth: 2^62 us at 2 Hz make 2^63, which is negative when signed, hence ahead of point 0.
    EXPECT_EQ(AttenAt(Curve({10, 20}, 2), std::int64_t{1} << 62), 0);
    // Back: -1,000,000 / 3 with 2^64 - 1,000,000 as dividend.
    EXPECT_EQ(TimeOf(Curve({-1}, 3), 0), 6148914691236183872);
}

TEST(ProfileResultsTest, CopiesAreEqualAndIndependent) {
    CProfileResults const record = FullRecord();
    CProfileResults copy(record);
    EXPECT_TRUE(copy == record);
    copy.AddIntroFadePoint(9);
    EXPECT_FALSE(copy == record);
    EXPECT_EQ(record.GetIntroFadePoints().GetCount(), 1U);
    copy = record;
    EXPECT_TRUE(copy == record);
}

TEST(ProfileResultsTest, EveryFieldCountsForEquality) {
    CPfBeatPattern pattern;
    pattern.Initialize(3);
    CPfBeatPattern a;
    CPfBeatPattern b;
    (void)FullRecord().GetBeatPatterns(&a, &b);
    CPfImpactPoints points(44100, 1000);
    points.AddMeasStartMark(5);
    std::vector<std::function<void(CProfileResults&)>> const changes{
        [](CProfileResults& r) { r.AddIntroBeatMixSproc(1); },
        [](CProfileResults& r) { r.AddOutroBeatMixSproc(1); },
        [](CProfileResults& r) { r.AddIntroFadePoint(1); },
        [&](CProfileResults& r) { r.AddMeasMarks(&points); },
        [](CProfileResults& r) { r.SetIntroEnd(99); },
        [](CProfileResults& r) { r.SetOutroStart(99); },
        [](CProfileResults& r) { r.SetBpm(120.001f); },
        [](CProfileResults& r) { r.SetSampleRate(44101, 44101); },
        [](CProfileResults& r) { r.SetPeakLevel(0.6f); },
        [](CProfileResults& r) { r.SetExtras(0.0f, 2.5f); },
        [](CProfileResults& r) { r.SetExtras(1.5f, 0.0f); },
        [](CProfileResults& r) { r.SetSampleCount(1001); },
        [](CProfileResults& r) { r.SetKey(8, 1); },
        [](CProfileResults& r) { r.SetKey(9, 2); },
        [&](CProfileResults& r) { r.AddBeatPatterns(&pattern, &b); },
        [&](CProfileResults& r) { r.AddBeatPatterns(&a, &pattern); },
        [](CProfileResults& r) { r.SetBitRate(1); },
        [](CProfileResults& r) { r.SetText(L"other"); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        CProfileResults changed = FullRecord();
        EXPECT_TRUE(changed == FullRecord());
        changes[i](changed);
        EXPECT_FALSE(changed == FullRecord()) << "change " << i;
    }
}

TEST(ProfileResultsTest, ListsAreStoredAsCountAndImages) {
    CProfileResults::CPositions list;
    list.Add(5);
    list.Add(-6);
    CBytesArchive archive(true);
    CProfileResults::Serialize(&archive, list);
    std::vector<std::uint8_t> expected;
    AppendImage(expected, std::int32_t{2});
    AppendImage(expected, std::int64_t{5});
    AppendImage(expected, std::int64_t{-6});
    EXPECT_EQ(archive.m_vBytes, expected);
}

TEST(ProfileResultsTest, LoadingReplacesTheList) {
    CBytesArchive archive(false);
    AppendImage(archive.m_vBytes, std::int32_t{3});
    AppendImage(archive.m_vBytes, std::int64_t{5});
    AppendImage(archive.m_vBytes, std::int64_t{-6}); // the third is missing and reads as 0
    CProfileResults::CPositions list;
    list.Add(77);
    CProfileResults::Serialize(&archive, list);
    EXPECT_EQ(ListOf(list), (Positions{5, -6, 0}));
}

TEST(ProfileResultsTest, LoadingANegativeCountGivesNoElements) {
    CBytesArchive archive(false);
    AppendImage(archive.m_vBytes, std::int32_t{-1});
    CProfileResults::CPositions list;
    list.Add(77);
    CProfileResults::Serialize(&archive, list);
    EXPECT_TRUE(list.IsEmpty());
}

TEST(ProfileResultsTest, LoadingBelievesNoCountAboveAMillion) {
    // 2^20 elements are taken, missing ones as 0; one more, and the archive must be broken.
    for (std::int32_t const count : {1 << 20, (1 << 20) + 1, 0x7FFFFFFF}) {
        CBytesArchive archive(false);
        archive.m_vBytes.resize(sizeof count);
        std::memcpy(archive.m_vBytes.data(), &count, sizeof count);
        CProfileResults::CPositions list;
        list.Add(77);
        CProfileResults::Serialize(&archive, list);
        EXPECT_EQ(list.GetCount(), count == 1 << 20 ? 1U << 20 : 0U);
    }
}
