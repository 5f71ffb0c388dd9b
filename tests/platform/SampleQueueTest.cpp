// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SampleQueue.h"

#include <array>
#include <bit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace {

using testing::ElementsAre;
using Pcm = std::vector<std::int16_t>;

std::vector<float> Take(CSampleQueue& queue, std::size_t count) {
    std::vector<float> samples(count);
    samples.resize(queue.Take(samples));
    return samples;
}

TEST(SampleQueueTest, DividesBy32767) {
    CSampleQueue queue;
    queue.Append(Pcm{0, 1, 32767, -32768});
    EXPECT_THAT(Take(queue, 4), ElementsAre(0.0f, 1.0f / 32767.0f, 1.0f, -1.0000305f));
}

TEST(SampleQueueTest, EverySampleHasTheBitsOfADivision) {
    Pcm pcm;
    for (int sample = -32768; sample <= 32767; ++sample) {
        pcm.push_back(static_cast<std::int16_t>(sample));
    }
    std::vector<float> samples(pcm.size());
    WidenPcm(pcm, samples.data());
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        float const divided = static_cast<float>(pcm[i]) / 32767.0f;
        ASSERT_EQ(std::bit_cast<std::uint32_t>(samples[i]), std::bit_cast<std::uint32_t>(divided))
            << pcm[i];
    }
}

TEST(SampleQueueTest, GivesTheOldestFirstAcrossAppends) {
    CSampleQueue queue;
    queue.Append(Pcm{32767, 0, 0});
    EXPECT_THAT(Take(queue, 2), ElementsAre(1.0f, 0.0f));
    queue.Append(Pcm{-32767});
    EXPECT_EQ(queue.GetCount(), 2U);
    EXPECT_THAT(Take(queue, 1), ElementsAre(0.0f));
    EXPECT_THAT(Take(queue, 5), ElementsAre(-1.0f)); // all that there is
    EXPECT_THAT(Take(queue, 5), ElementsAre());
    EXPECT_EQ(queue.GetTotal(), 4);
}

TEST(SampleQueueTest, GivesThemAsTheyCameToo) {
    CSampleQueue queue;
    queue.Append(Pcm{5, -32768, 7});
    Pcm samples(2);
    EXPECT_EQ(queue.Take(samples), 2U);
    EXPECT_THAT(samples, ElementsAre(5, -32768));
    EXPECT_THAT(Take(queue, 2), ElementsAre(7.0f / 32767.0f));
    EXPECT_EQ(queue.Take(samples), 0U);
}

TEST(SampleQueueTest, WhatIsDroppedStillCounts) {
    CSampleQueue queue;
    queue.Append(Pcm{1, 2, 3});
    (void)Take(queue, 1);
    queue.Drop();
    EXPECT_EQ(queue.GetCount(), 0U);
    EXPECT_EQ(queue.GetTotal(), 3);
    queue.Append(Pcm{32767});
    EXPECT_EQ(queue.GetTotal(), 4);
    EXPECT_THAT(Take(queue, 2), ElementsAre(1.0f));
    queue.Append(Pcm{1});
    queue.Clear();
    EXPECT_EQ(queue.GetCount(), 0U);
    EXPECT_EQ(queue.GetTotal(), 0);
}

} // namespace
