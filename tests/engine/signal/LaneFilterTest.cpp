// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Every expected value is the plain loop's over the whole stream.

#include "engine/signal/LaneFilter.h"

#include "engine/kernels/Kernels.h"
#include "support/ClickTrack.h"
#include "support/FailingAllocation.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

// Three of them are the note search's low-pass: 120 Hz, damping 1.25, at 44100 Hz.
constexpr CIIRSection kBassSection{7.23033736e-05f, 0.000144606747f, 7.23033736e-05f, -1.97856641f,
                                   0.97885561f};
constexpr std::int64_t kRunnerSpacing = 20'000; // rounded up to 41 bursts of 512, 20992 samples

using CStream = std::vector<float>;

CStream Plain(CStream const& stream) {
    CStream out(stream.size());
    CThreeStates states{};
    FilterLanePlain(kBassSection, {stream.data(), out.data(), &states},
                    static_cast<std::int32_t>(stream.size()));
    return out;
}

/// Moves what is finished behind `out`.
void TakeFinished(CLaneFilter& filter, CStream& out) {
    for (auto done = filter.GetFinished(); !done.empty(); done = filter.GetFinished()) {
        out.insert(out.end(), done.begin(), done.end());
        filter.Drop(done.size());
    }
}

void PushAll(CLaneFilter& filter, std::span<float const> stream, std::size_t piece, CStream& out) {
    while (!stream.empty()) {
        std::size_t const taken = filter.Push(stream.first(std::min(piece, stream.size())));
        stream = stream.subspan(taken);
        if (taken == 0) {
            filter.Run();
            TakeFinished(filter, out);
        }
    }
}

CStream Filtered(CStream const& stream, std::int32_t lanes, std::int64_t spacing = kRunnerSpacing,
                 std::size_t piece = 256) {
    CLaneFilter filter(kBassSection, lanes, spacing);
    EXPECT_TRUE(filter.IsReady());
    CStream out;
    PushAll(filter, stream, piece, out);
    filter.Finish();
    TakeFinished(filter, out);
    return out;
}

/// Place of the first sample that differs in a bit, or -1.
std::ptrdiff_t FirstDifference(CStream const& a, CStream const& b) {
    if (a.size() != b.size()) {
        return static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
    }
    auto const same = [](float x, float y) {
        return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
    };
    auto const at = std::ranges::mismatch(a, b, same).in1;
    return at == a.end() ? -1 : at - a.begin();
}

CStream Times(CStream stream, float gain) {
    for (float& sample : stream) {
        sample *= gain;
    }
    return stream;
}

CStream Then(CStream first, CStream const& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

CStream FadeToZero(CStream stream) {
    for (std::size_t i = 0; i < stream.size(); ++i) {
        float const left =
            1.0f - static_cast<float>(i) / (0.9f * static_cast<float>(stream.size()));
        stream[i] = std::trunc(stream[i] * std::max(left, 0.0f) * 32767.0f) / 32768.0f;
    }
    return stream;
}

CStream Impulse() {
    CStream stream(60'000);
    stream[30'000] = 1.0f;
    return stream;
}

/// Clicks of two kinds by turns, with silence between them that is a multiple of nothing.
CStream TwoKindsOfClicks() {
    constexpr std::size_t kPeriodSamples = 17'011;
    CStream stream(12 * kPeriodSamples);
    for (std::size_t i = 0; i < stream.size(); ++i) {
        std::size_t const since = i % kPeriodSamples;
        bool const isStrong = i / kPeriodSamples % 3 == 0;
        stream[i] = since < (isStrong ? 200U : 90U) ? (isStrong ? 0.9f : -0.3f) : 0.0f;
    }
    return stream;
}

std::map<std::string, CStream> MakeStreams() {
    return {
        {"song", MakeSong(128.0, 15.0)},
        {"full-scale noise", MakeNoise(10.0, 1.0f)},
        {"quiet noise", MakeNoise(4.0, 0.0001f)},
        {"sine", MakeSine(55.0, 4.0, 0.5f)},
        {"constant", CStream(150'000, 0.5f)},
        {"silence", CStream(150'000)},
        {"silence, then music", Then(CStream(70'001), MakeSong(97.3, 3.0))},
        {"half a second of music, then silence", Then(MakeSong(128.0, 0.5), CStream(250'000))},
        {"clicks, silence between", MakeClickTrack(128.0, 6.0)},
        {"clicks, silence for long", MakeClickTrack(31.0, 6.0)},
        {"clicks of two kinds", TwoKindsOfClicks()},
        {"fade to zero", FadeToZero(MakeSong(140.0, 4.0))},
        {"impulse", Impulse()},
        {"subnormal from the start", Times(MakeNoise(0.5, 1.0f), 0x1.0p-130f)},
        {"subnormal, hardly above zero", Times(MakeNoise(0.5, 1.0f), 0x1.0p-146f)},
        {"music down to subnormal noise",
         Then(MakeSong(128.0, 0.5), Times(MakeNoise(1.0, 1.0f), 0x1.0p-120f))},
        {"negative zero", Then(MakeNoise(0.2, 1.0f), CStream(40'000, -0.0f))},
    };
}

/// Samples from `start` until filters that begin there, empty, have the states of the whole stream;
/// nothing when they never have.
std::optional<std::size_t> SamplesToMeet(CStream const& stream, std::size_t start) {
    CThreeStates whole{};
    CThreeStates late{};
    float unused = 0.0f;
    for (std::size_t i = 0; i < stream.size(); ++i) {
        if (i > start && std::memcmp(&whole, &late, sizeof(whole)) == 0) {
            return i - start;
        }
        FilterLanePlain(kBassSection, {&stream[i], &unused, &whole}, 1);
        if (i >= start) {
            FilterLanePlain(kBassSection, {&stream[i], &unused, &late}, 1);
        }
    }
    return std::nullopt;
}

/// A square wave of 400 samples: its states settle into one of several rounds.
CStream NeverMeeting() {
    CStream stream(600'000);
    for (std::size_t i = 0; i < stream.size(); ++i) {
        stream[i] = i % 400 < 200 ? 0.5f : -0.5f;
    }
    return stream;
}

} // namespace

TEST(LaneFilterTest, EveryNumberOfLanesKeepsTheBits) {
    for (auto const& [name, stream] : MakeStreams()) {
        CStream const expected = Plain(stream);
        for (std::int32_t const lanes : {1, 2, 3, 4, 5, 8}) {
            EXPECT_EQ(FirstDifference(Filtered(stream, lanes), expected), -1) << name << lanes;
        }
    }
}

TEST(LaneFilterTest, EveryVectorUnitKeepsTheBits) {
    for (auto const& [name, stream] : MakeStreams()) {
        CStream const expected = Plain(stream);
        for (CKernelTarget const& target : GetKernelTargets()) {
            CForceKernels const forced(target);
            for (std::int32_t const lanes : {GetLaneCount(), 3, kMostLanes}) {
                EXPECT_EQ(FirstDifference(Filtered(stream, lanes), expected), -1)
                    << name << lanes << target.m_pName;
            }
        }
    }
}

TEST(LaneFilterTest, LanesOfAnyLengthKeepTheBits) {
    // Where the sections run side by side at different samples, the shortest have no middle.
    CStream const stream = MakeSong(128.0, 1.0);
    constexpr std::size_t kApart = 100; // samples from lane to lane
    for (CKernelTarget const& target : GetKernelTargets()) {
        CForceKernels const forced(target);
        for (std::size_t const count : {4U, 8U, 12U, 16U, 20U, 92U}) {
            for (std::size_t lanes = 1; lanes <= kMostLanes; ++lanes) {
                CStream out(stream.size());
                CStream expected(stream.size());
                std::vector<CThreeStates> states(lanes, {0.5f, 0.25f, 0.125f, -0.5f, 0.75f, 1.0f});
                std::vector<CThreeStates> expectedStates = states;
                std::vector<CIIRLane> together;
                for (std::size_t i = 0; i < lanes; ++i) {
                    std::size_t const at = i * kApart;
                    together.push_back({&stream[at], &out[at], &states[i]});
                    FilterLanePlain(kBassSection, {&stream[at], &expected[at], &expectedStates[i]},
                                    static_cast<std::int32_t>(count));
                }
                FilterLanes(kBassSection, together, static_cast<std::int32_t>(count));
                EXPECT_EQ(FirstDifference(out, expected), -1)
                    << target.m_pName << count << "x" << lanes;
                EXPECT_EQ(states, expectedStates) << target.m_pName << count << "x" << lanes;
            }
        }
    }
}

TEST(LaneFilterTest, RunnersMeetInMusic) {
    // Else no test here would ever see a runner end.
    EXPECT_LT(SamplesToMeet(MakeSong(128.0, 15.0), kRunnerSpacing).value_or(1'000'000), 600'000U);
}

TEST(LaneFilterTest, StatesThatNeverMeetKeepTheBits) {
    CStream const stream = NeverMeeting();
    ASSERT_FALSE(SamplesToMeet(stream, 20'992).has_value());
    ASSERT_FALSE(SamplesToMeet(stream, std::size_t{2} * 20'992).has_value());
    CStream const expected = Plain(stream);
    for (std::int32_t const lanes : {2, 4, 8}) {
        EXPECT_EQ(FirstDifference(Filtered(stream, lanes), expected), -1) << lanes;
    }
}

TEST(LaneFilterTest, LengthsAroundEveryBorderKeepTheBits) {
    // A burst, a spacing, the start of the third runner, the room of four lanes.
    CStream const stream = MakeSong(140.0, 3.0);
    CStream const expected = Plain(stream);
    for (std::size_t const border : {0U, 512U, 20'992U, 41'984U, 104'960U}) {
        for (std::size_t const beside : {0U, 1U, 255U, 256U, 511U}) {
            for (std::size_t const length :
                 {border + beside, border - std::min(border, std::size_t{beside})}) {
                CStream const part(stream.begin(),
                                   stream.begin() + static_cast<std::ptrdiff_t>(length));
                CStream const whole(expected.begin(),
                                    expected.begin() + static_cast<std::ptrdiff_t>(length));
                ASSERT_EQ(FirstDifference(Filtered(part, 4), whole), -1) << length;
            }
        }
    }
}

TEST(LaneFilterTest, PushesOfAnyLengthKeepTheBits) {
    CStream const stream = MakeSong(97.3, 4.0);
    CStream const expected = Plain(stream);
    for (std::size_t const piece : {1U, 255U, 511U, 513U, 4096U, 1'000'000U}) {
        EXPECT_EQ(FirstDifference(Filtered(stream, 8, kRunnerSpacing, piece), expected), -1)
            << piece;
    }
    for (std::int64_t const spacing : {1, 512, 513, 3000, 100'000}) {
        EXPECT_EQ(FirstDifference(Filtered(stream, 8, spacing), expected), -1) << spacing;
    }
}

TEST(LaneFilterTest, TheStreamGoesOnAfterAFinish) {
    CStream const stream = MakeSong(128.0, 8.0);
    CStream const expected = Plain(stream);
    for (std::size_t const cut : {0U, 1U, 700U, 60'000U, 200'001U}) {
        CLaneFilter filter(kBassSection, 4, kRunnerSpacing);
        CStream out;
        PushAll(filter, {stream.data(), cut}, 256, out);
        filter.Finish();
        filter.Finish();
        TakeFinished(filter, out);
        EXPECT_EQ(out.size(), cut);
        PushAll(filter, {stream.data() + cut, stream.size() - cut}, 256, out);
        filter.Finish();
        TakeFinished(filter, out);
        EXPECT_EQ(FirstDifference(out, expected), -1) << cut;
    }
}

TEST(LaneFilterTest, WhatIsLeftAfterAFinishStaysInFront) {
    CStream const stream = MakeSong(128.0, 8.0);
    CStream const expected = Plain(stream);
    for (std::size_t const left : {1U, 511U, 512U, 513U, 60'000U, 65'536U}) {
        constexpr std::size_t kCut = 200'001;
        CLaneFilter filter(kBassSection, 4, kRunnerSpacing);
        CStream out;
        PushAll(filter, {stream.data(), kCut - left}, 256, out);
        filter.Finish();
        TakeFinished(filter, out);
        PushAll(filter, {stream.data() + kCut - left, left}, 256, out);
        filter.Finish();
        PushAll(filter, {stream.data() + kCut, stream.size() - kCut}, 256, out);
        filter.Finish();
        TakeFinished(filter, out);
        EXPECT_EQ(FirstDifference(out, expected), -1) << left;
    }
}

TEST(LaneFilterTest, AWindowLiesInOnePieceAcrossTheEndOfTheRing) {
    // A reader that looks at 61440 samples and drops 32768 of them, over three rings.
    CStream const stream = MakeSong(128.0, 30.0);
    CStream const expected = Plain(stream);
    CLaneFilter filter(kBassSection, 4, 70'000); // rounded up to 137 bursts of 512: 5 * 70144
    constexpr std::size_t kSeen = 61'440;
    constexpr std::size_t kDropped = 32'768;
    std::size_t pos = 0;
    auto const read = [&] {
        for (auto done = filter.GetFinished(); done.size() >= kSeen; done = filter.GetFinished()) {
            CStream const seen(done.begin(), done.begin() + kSeen);
            CStream const wanted(expected.begin() + static_cast<std::ptrdiff_t>(pos),
                                 expected.begin() + static_cast<std::ptrdiff_t>(pos + kSeen));
            EXPECT_EQ(FirstDifference(seen, wanted), -1) << pos;
            filter.Drop(kDropped);
            pos += kDropped;
        }
    };
    for (std::span<float const> rest(stream); !rest.empty();) {
        rest = rest.subspan(filter.Push(rest.first(std::min<std::size_t>(256, rest.size()))));
        filter.Run();
        read();
    }
    filter.Finish();
    read();
    EXPECT_GT(pos, 3U * 5U * 70'144U);
    EXPECT_GE(pos + kSeen, stream.size());
}

TEST(LaneFilterTest, ARunFinishesASpacing) {
    CStream const stream = MakeSong(128.0, 8.0);
    CLaneFilter filter(kBassSection, 4, kRunnerSpacing);
    EXPECT_EQ(filter.Push(stream), 5U * 20'992U); // (4 + 1) spacings
    EXPECT_TRUE(filter.GetFinished().empty());
    filter.Run();
    EXPECT_GE(filter.GetFinished().size(), 20'992U);
}

TEST(LaneFilterTest, WithoutMemoryItIsNotReady) {
    CFailingAllocation const failing;
    EXPECT_FALSE(CLaneFilter(kBassSection, 4, kRunnerSpacing).IsReady());
}
