// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/ListeningReader.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<float> Load(IPcmReader& reader, std::size_t first, std::size_t count) {
    std::vector<float> samples(count);
    (void)reader.LoadPcm(reinterpret_cast<std::uint8_t*>(samples.data()),
                         static_cast<std::int64_t>(first * sizeof(float)),
                         static_cast<std::uint32_t>(count * sizeof(float)));
    return samples;
}

} // namespace

TEST(ListeningReaderTest, WhatIsLoadedIsHeardInOrder) {
    std::array<float, 5> const samples = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f};
    CPcmReader plain(samples.data(), 5);
    std::vector<float> heard;
    CListeningReader reader(plain, [&](std::span<float const> block) {
        heard.insert(heard.end(), block.begin(), block.end());
    });
    EXPECT_EQ(Load(reader, 0, 3), (std::vector<float>{1.0f, 2.0f, 3.0f}));
    EXPECT_EQ(Load(reader, 3, 2), (std::vector<float>{4.0f, 5.0f}));
    EXPECT_EQ(heard, (std::vector<float>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f}));
}

TEST(ListeningReaderTest, WithoutAListenerItReadsAlike) {
    std::array<float, 2> const samples = {1.0f, 2.0f};
    CPcmReader plain(samples.data(), 2);
    CListeningReader reader(plain);
    EXPECT_EQ(Load(reader, 0, 2), (std::vector<float>{1.0f, 2.0f}));
    std::int64_t count = 0;
    EXPECT_EQ(reader.GetSampleCount(&count), kStatusOk);
    EXPECT_EQ(count, 2);
}
