// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Every expected value is the plain loop's.

#include "engine/signal/Decay.h"

#include "engine/signal/QuietFilter.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

// Three of them are the note search's low-pass: 120 Hz, damping 1.25, at 44100 Hz.
constexpr CIIRSection kDecaySection{7.23033736e-05f, 0.000144606747f, 7.23033736e-05f, -1.97856641f,
                                    0.97885561f};
constexpr std::int32_t kPieceSamples = 512;
constexpr std::size_t kKnownSamples = 5 * std::size_t{kPieceSamples};
constexpr CThreeStates kLoud = {0x1p-96f, 0x1p-95f, -0x1p-97f, 0x1p-96f, 0x1.8p-96f, 0x1p-98f};
constexpr CThreeStates kOther = {0x1p-99f, 0x1p-99f, 0x1p-99f, 0x1p-99f, 0x1p-99f, 0x1p-99f};

/// What `count` samples of silence let out and leave behind, by the plain loop.
std::vector<float> PlainSilence(CThreeStates& states, std::size_t count) {
    std::vector<float> const silence(count);
    std::vector<float> out(count);
    FilterLanePlain(kDecaySection, {silence.data(), out.data(), &states},
                    static_cast<std::int32_t>(count));
    return out;
}

/// A decay that follows these states, learnt piece by piece.
CDecay Known(CThreeStates states) {
    std::vector<float> const silence(kPieceSamples);
    std::vector<float> out(kPieceSamples);
    CDecay decay;
    decay.Start(states);
    for (std::size_t done = 0; done < kKnownSamples; done += kPieceSamples) {
        EXPECT_TRUE(decay.Continues(states));
        FilterSilence(kDecaySection, {silence.data(), out.data(), &states}, kPieceSamples, &decay);
    }
    return decay;
}

} // namespace

TEST(DecayTest, GoesOnFromAnyPlaceAsThePlainLoop) {
    CDecay const decay = Known(kLoud);
    std::vector<float> const silence(kPieceSamples);
    for (std::size_t const place : {0U, 1U, 2U, 511U, 777U, 1234U, 2048U}) {
        CThreeStates states = kLoud;
        (void)PlainSilence(states, place);
        ASSERT_EQ(decay.Find(states), place);
        CThreeStates plain = states;
        std::vector<float> const expected = PlainSilence(plain, kPieceSamples);
        std::vector<float> out(kPieceSamples);
        ASSERT_TRUE(decay.Replay(place, {silence.data(), out.data(), &states}, kPieceSamples));
        EXPECT_EQ(out, expected) << place;
        EXPECT_EQ(states, plain) << place;
    }
}

TEST(DecayTest, OtherStatesAreNotInIt) {
    CDecay const decay = Known(kLoud);
    EXPECT_EQ(decay.Find(kOther), std::nullopt);
    CThreeStates oneBitOff = kLoud;
    oneBitOff[5] = 0x1.000002p-98f;
    EXPECT_EQ(decay.Find(oneBitOff), std::nullopt);
    EXPECT_EQ(CDecay().Find({}), std::nullopt);
}

TEST(DecayTest, WhatIsNotKnownIsNotReplayed) {
    CDecay const decay = Known(kLoud);
    CThreeStates states = kLoud;
    (void)PlainSilence(states, kKnownSamples - 100);
    CThreeStates const before = states;
    std::vector<float> const silence(kPieceSamples);
    std::vector<float> out(kPieceSamples, 7.0f);
    EXPECT_FALSE(
        decay.Replay(kKnownSamples - 100, {silence.data(), out.data(), &states}, kPieceSamples));
    EXPECT_EQ(states, before);
    EXPECT_EQ(out, std::vector<float>(kPieceSamples, 7.0f));
    EXPECT_FALSE(decay.Continues(states));
}

TEST(DecayTest, APlaceInAForgottenDecayLeadsNowhere) {
    CDecay decay = Known(kOther);
    CThreeStates states = kLoud;
    std::vector<float> const silence(kPieceSamples);
    std::vector<float> out(kPieceSamples);
    EXPECT_FALSE(decay.Replay(0, {silence.data(), out.data(), &states}, kPieceSamples));
    decay.Start(kLoud);
    EXPECT_FALSE(decay.Replay(0, {silence.data(), out.data(), &states}, kPieceSamples));
    EXPECT_TRUE(decay.Continues(kLoud));
    EXPECT_FALSE(decay.Continues(kOther));
}
