// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/EngineRate.h"
#include "engine/print/Fingerprint.h"

#include "base/TimeUtil.h"
#include "engine/envelope/PcmThumbnail.h"
#include "support/ClickTrack.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr std::size_t kFrameSamples = 256;
constexpr std::size_t kWindow = 16384;
constexpr std::int64_t kNoOffset = -99;

/// Pushes data[0, count) in frames, as the pass does.
void PushFrames(CPfFingerprintBuilder& builder, std::vector<float> const& data, std::size_t count) {
    for (std::size_t pos = 0; pos + kFrameSamples <= count; pos += kFrameSamples) {
        builder.PushPcm(&data[pos], kFrameSamples);
    }
}

void PushData(CPfFingerprintBuilder& builder, std::vector<float> const& data) {
    PushFrames(builder, data, data.size());
}

std::vector<float> QuietNoise(double seconds) {
    return MakeNoise(seconds, 0.3f, 4711);
}

/// Silence with a pair +a, -a four samples apart at `pos`.
void AddPair(std::vector<float>& data, std::size_t pos, float a) {
    data[pos] = a;
    data[pos + 4] = -a;
}

/// The same rules over a window that is shifted on every push.
class CShiftingWindow {
public:
    CShiftingWindow(CFingerprint* capture, CFingerprint* reference, std::int64_t* offset)
        : m_pCapture(capture), m_pReference(reference), m_pOffset(offset) {}

    CStatus PushPcm(float const* data, std::uint32_t n) {
        if (SamplePosToTime(m_nFirst, kEngineRateHz) > 30000000) {
            return kStatusNothing;
        }
        auto const overflow = static_cast<std::int64_t>(m_vWindow.size()) + n - 16384;
        if (overflow > 0) {
            auto const gone =
                std::min<std::int64_t>(overflow, static_cast<std::int64_t>(m_vWindow.size()));
            m_vWindow.erase(m_vWindow.begin(),
                            m_vWindow.begin() + static_cast<std::ptrdiff_t>(gone));
            m_nFirst += overflow;
        }
        std::size_t const taken = std::min<std::size_t>(n, kWindow - m_vWindow.size());
        m_vWindow.insert(m_vWindow.end(), data, data + taken);
        Scan();
        Find();
        return kStatusOk;
    }

private:
    void Scan() {
        if (m_bCaptured || SamplePosToTime(m_nFirst, kEngineRateHz) <= 999999 ||
            m_vWindow.size() < 512) {
            return;
        }
        float min = 0.0f;
        float max = 0.0f;
        for (std::size_t i = 0; i < 512; i += 4) {
            min = std::min(min, m_vWindow[i]);
            max = std::max(max, m_vWindow[i]);
        }
        if (m_pCapture->IsPrintSmaller(min, max)) {
            m_pCapture->CapturePrint(m_vWindow.data(), 512,
                                     SamplePosToTime(m_nFirst, kEngineRateHz), min, max);
            m_bCaptured = max - min > 1.0f;
        }
    }

    void Find() {
        auto const count = static_cast<std::int64_t>(m_vWindow.size());
        std::int64_t const low = m_nFirst < 2048 ? 0 : m_nFirst + 2048;
        std::int64_t const from = std::max(SamplePosToTime(low, kEngineRateHz), m_nNext);
        std::int64_t const to = SamplePosToTime(m_nFirst + count - 2561, kEngineRateHz);
        std::int64_t const time = m_pReference->GetTime();
        if (time < from || time > to) {
            return;
        }
        std::int64_t const rel = TimeToSamplePos(time, kEngineRateHz) - m_nFirst;
        std::int64_t const start = std::max<std::int64_t>(rel - 2048, 0);
        std::int64_t const end = count < rel + 2560 ? count - 512 : rel + 2048;
        std::int32_t pos = 0;
        if (start < end &&
            m_pReference->DoesPrintMatch(m_vWindow.data(), static_cast<std::uint32_t>(count),
                                         static_cast<std::int32_t>(start),
                                         static_cast<std::int32_t>(end), &pos)) {
            *m_pOffset = (pos - rel) * 1000000 / kEngineRateHz;
        }
        m_nNext = to + 1;
    }

    CFingerprint* m_pCapture;
    CFingerprint* m_pReference;
    std::int64_t* m_pOffset;
    std::vector<float> m_vWindow;
    std::int64_t m_nFirst = 0;
    std::int64_t m_nNext = 0;
    bool m_bCaptured = false;
};

/// Offset reported for a stream in which everything lies `shift` samples later than when the
/// reference was captured; a negative shift is earlier.
std::int64_t OffsetOfShifted(std::int64_t shift) {
    std::vector<float> const data = QuietNoise(4.0);
    CFingerprint reference;
    CPfFingerprintBuilder first(&reference, nullptr, nullptr);
    first.SetSampleRate(kEngineRateHz);
    PushData(first, data);

    std::vector<float> moved;
    if (shift > 0) {
        moved = MakeNoise(1.0, 0.3f, 5);
        moved.resize(static_cast<std::size_t>(shift));
    }
    moved.insert(moved.end(),
                 data.begin() + static_cast<std::ptrdiff_t>(std::max<std::int64_t>(-shift, 0)),
                 data.end());
    std::int64_t offset = kNoOffset;
    CPfFingerprintBuilder second(nullptr, &reference, &offset);
    second.SetSampleRate(kEngineRateHz);
    PushData(second, moved);
    return offset;
}

} // namespace

TEST(FingerprintBuilderTest, CapturesNothingBeforeTheFirstSecond) {
    // The window reaches position 44032, 998458 us, with the 236th push, and 44288, 1004263 us,
    // with the 237th.
    std::vector<float> const data = QuietNoise(3.0);
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(kEngineRateHz);
    PushFrames(builder, data, 44032 + kWindow);
    EXPECT_TRUE(print.GetValues().empty());
    builder.PushPcm(&data[44032 + kWindow], kFrameSamples);
    EXPECT_EQ(print.GetTime(), 1004263);
    ASSERT_EQ(print.GetValues().size(), 128U);
    EXPECT_EQ(print.GetValues()[0], data[44288]);
    EXPECT_EQ(print.GetValues()[1], data[44292]);
    EXPECT_EQ(print.GetValues()[127], data[44288 + 508]);
}

TEST(FingerprintBuilderTest, FirstSecondMustBeExceeded) {
    // At a million samples a second positions are microseconds.
    std::vector<float> const data(1100000, 0.25f);
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(1000000);
    std::size_t pos = 0;
    auto const push = [&](std::size_t count) {
        builder.PushPcm(&data[pos], static_cast<std::uint32_t>(count));
        pos += count;
    };
    while (pos < 1000000) {
        push(10000);
    }
    push(999999 + kWindow - 1000000); // the window begins at 999999
    EXPECT_TRUE(print.GetValues().empty());
    push(1);
    EXPECT_EQ(print.GetTime(), 1000000);
}

TEST(FingerprintBuilderTest, KeepsTheWidestExcerptUntilOneExceedsARangeOfOne) {
    std::vector<float> data(20 * std::size_t{kEngineRateHz}, 0.0f);
    AddPair(data, 100000, 0.25f); // first seen by the window at 99584 = 389 * 256
    AddPair(data, 200000, 0.125f);
    AddPair(data, 300000, 0.25f); // as wide as the first: not taken
    AddPair(data, 400000, 0.5f);  // range 1.0 exactly: the search goes on
    AddPair(data, 500000, 0.75f); // 1.5: the last one
    AddPair(data, 600000, 1.0f);
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(kEngineRateHz);

    // The pair at p lies in the first 512 samples of the window at w when w <= p, p + 4 < w + 512:
    // w is the first multiple of 256 above p - 508.
    std::size_t pushed = 0;
    auto const pushTo = [&](std::size_t end) {
        for (; pushed + kFrameSamples <= end; pushed += kFrameSamples) {
            builder.PushPcm(&data[pushed], kFrameSamples);
        }
    };
    pushTo(350000 + kWindow);
    EXPECT_EQ(print.GetTime(), SamplePosToTime(99584, kEngineRateHz));
    EXPECT_EQ(print.GetMax(), 0.25f);
    EXPECT_EQ(print.GetMin(), -0.25f);
    pushTo(450000 + kWindow);
    EXPECT_EQ(print.GetTime(), SamplePosToTime(399616, kEngineRateHz)); // 1561 * 256
    pushTo(data.size());
    EXPECT_EQ(print.GetTime(), SamplePosToTime(499712, kEngineRateHz)); // 1952 * 256
    EXPECT_EQ(print.GetMax(), 0.75f);
    // 500000 - 499712 = 288, the value at 288 / 4.
    EXPECT_EQ(print.GetValues()[72], 0.75f);
    EXPECT_EQ(print.GetValues()[73], -0.75f);
}

TEST(FingerprintBuilderTest, OnlyEveryFourthSampleCounts) {
    std::vector<float> data(3 * std::size_t{kEngineRateHz}, 0.0f);
    data[100001] = 0.9f;
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(kEngineRateHz);
    PushData(builder, data);
    EXPECT_TRUE(print.GetValues().empty()) << "a range of 0 is no wider than that of no print";
}

TEST(FingerprintBuilderTest, AnswersNothingAfterThirtySeconds) {
    // After k frames the window begins at 256 k - 16384. That exceeds 30 s, 1323000 samples, for
    // k = 5232: 1323008 samples, 30000181 us.
    std::vector<float> const frame(kFrameSamples, 0.5f);
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(kEngineRateHz);
    for (int k = 1; k <= 5232; ++k) {
        ASSERT_EQ(builder.PushPcm(frame.data(), kFrameSamples), kStatusOk) << k;
    }
    std::vector<float> const loud(kFrameSamples, 0.9f);
    for (int k = 0; k < 100; ++k) {
        ASSERT_EQ(builder.PushPcm(loud.data(), kFrameSamples), kStatusNothing);
    }
    EXPECT_EQ(print.GetMax(), 0.5f) << "nothing more is captured";
}

TEST(FingerprintBuilderTest, FindsThePrintWhereItWas) {
    EXPECT_EQ(OffsetOfShifted(0), 0);
}

TEST(FingerprintBuilderTest, ReportsByHowMuchTheStreamHasMoved) {
    EXPECT_EQ(OffsetOfShifted(100), 2267);   // 100 * 1000000 / 44100 = 2267.57
    EXPECT_EQ(OffsetOfShifted(-100), -2267); // truncated toward zero
    EXPECT_EQ(OffsetOfShifted(2000), 45351); // 45351.47
    EXPECT_EQ(OffsetOfShifted(-2000), -45351);
    EXPECT_EQ(OffsetOfShifted(2048), 46439); // the last position searched
}

TEST(FingerprintBuilderTest, LooksNoFurtherThanItsReach) {
    EXPECT_EQ(OffsetOfShifted(2049), kNoOffset);
    EXPECT_EQ(OffsetOfShifted(-2049), kNoOffset);
    EXPECT_EQ(OffsetOfShifted(20000), kNoOffset) << "the stretch is searched once";
}

TEST(FingerprintBuilderTest, NeedsReferenceResultAndRate) {
    std::vector<float> const data = QuietNoise(4.0);
    CSmartPtr<CFingerprint> reference;
    reference.Create();
    CPfFingerprintBuilder first(reference.Get(), nullptr, nullptr);
    first.SetSampleRate(kEngineRateHz);
    PushData(first, data);
    CPfFingerprintBuilder withoutResult(nullptr, reference.Get(), nullptr);
    withoutResult.SetSampleRate(kEngineRateHz);
    std::int64_t offset = kNoOffset;
    CPfFingerprintBuilder withoutReference(nullptr, nullptr, &offset);
    withoutReference.SetSampleRate(kEngineRateHz);
    CPfFingerprintBuilder withoutRate(nullptr, reference.Get(), &offset);
    PushData(withoutResult, data);
    PushData(withoutReference, data);
    PushData(withoutRate, data);
    EXPECT_EQ(offset, kNoOffset);
}

TEST(FingerprintBuilderTest, GivesBackItsReference) {
    std::vector<float> const data = QuietNoise(4.0);
    CSmartPtr<CFingerprint> reference;
    reference.Create();
    reference->CapturePrint(&data[50000], 512, SamplePosToTime(50000, kEngineRateHz), -0.3f, 0.3f);
    std::int64_t offset = kNoOffset;
    CPfFingerprintBuilder builder(nullptr, reference.Get(), &offset);
    builder.SetSampleRate(kEngineRateHz);
    PushData(builder, data);
    EXPECT_EQ(offset, 0);
    EXPECT_EQ(reference->AddRef(), 2);
    EXPECT_EQ(reference->Release(), 1);
}

TEST(FingerprintBuilderTest, MovingWindowIsTheShiftedWindow) {
    std::vector<float> data = QuietNoise(34.0);
    for (std::size_t i = 0; i < data.size(); ++i) {
        // Growing slowly, so that captures go on; below a range of 1 until second 25.
        data[i] *= 0.2f + static_cast<float>(i) * 1.4e-6f;
    }
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        CFingerprint reference;
        reference.CapturePrint(&data[80000], 512, SamplePosToTime(80300, kEngineRateHz), -0.1f,
                               0.1f);
        CFingerprint captured;
        CFingerprint expected;
        std::int64_t offset = kNoOffset;
        std::int64_t expectedOffset = kNoOffset;
        CPfFingerprintBuilder builder(&captured, &reference, &offset);
        builder.SetSampleRate(kEngineRateHz);
        CShiftingWindow oracle(&expected, &reference, &expectedOffset);
        std::uint32_t random = seed;
        for (std::size_t pos = 0; pos < data.size();) {
            random = random * 1664525U + 1013904223U;
            // Mostly short pushes, behind the reference now and then one of up to 40000 samples.
            std::uint32_t const longest = pos > 200000 && random >> 28 == 0 ? 40000 : 700;
            auto const n = std::min(static_cast<std::uint32_t>(data.size() - pos),
                                    1 + (random >> 8) % longest);
            ASSERT_EQ(builder.PushPcm(&data[pos], n), oracle.PushPcm(&data[pos], n)) << pos;
            pos += n;
            ASSERT_EQ(offset, expectedOffset) << pos;
            ASSERT_EQ(captured.GetTime(), expected.GetTime()) << pos;
            ASSERT_EQ(captured.GetValues(), expected.GetValues()) << pos;
        }
        EXPECT_EQ(offset, -6802) << "300 samples earlier: 6802.7 us";
        EXPECT_GT(captured.GetTime(), 1500000) << "the capture went on after its first";
    }
}

TEST(FingerprintBuilderTest, PinsOversizedPushKeepsItsFirstValues) {
    // 105000 samples into an empty window of 16384: it moves on by 88616, as if the newest were
    // kept, yet holds the first 16384 of the push.
    std::vector<float> data(105000);
    for (std::size_t i = 0; i < data.size(); ++i) {
        data[i] = static_cast<float>(i % 1000) * 1.0e-4f;
    }
    CFingerprint print;
    CPfFingerprintBuilder builder(&print, nullptr, nullptr);
    builder.SetSampleRate(kEngineRateHz);
    EXPECT_EQ(builder.PushPcm(data.data(), 105000), kStatusOk);
    EXPECT_EQ(print.GetTime(), SamplePosToTime(105000 - 16384, kEngineRateHz));
    ASSERT_EQ(print.GetValues().size(), 128U);
    EXPECT_EQ(print.GetValues()[0], data[0]);
    EXPECT_EQ(print.GetValues()[127], data[508]);
}

TEST(FingerprintBuilderTest, LargePrintTakesTheFirst4096Elements) {
    CPfPcmThumbnail thumb;
    thumb.Initialize(5000 * 256, kEngineRateHz, 256);
    for (std::int32_t i = 0; i < 5000; ++i) {
        thumb.SetAt(i, static_cast<float>(i));
    }
    CFingerprint print;
    CPfFingerprintBuilder builder(nullptr, nullptr, nullptr);
    builder.BuildLargePrint(&thumb, &print);
    ASSERT_EQ(print.GetValues().size(), 4096U);
    EXPECT_EQ(print.GetValues()[4095], 4095.0f);
    EXPECT_EQ(print.GetMax(), 4095.0f);
    EXPECT_EQ(print.GetMin(), 0.0f);
    EXPECT_EQ(print.GetTime(), 0);

    thumb.Initialize(10 * 256, kEngineRateHz, 256);
    builder.BuildLargePrint(&thumb, &print);
    EXPECT_EQ(print.GetValues().size(), 10U);
    builder.BuildLargePrint(&thumb, nullptr);
}
