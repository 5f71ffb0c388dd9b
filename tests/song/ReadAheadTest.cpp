// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/ReadAhead.h"

#include "platform/AudioStream.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t kCount = 2'000'003; // almost two rings, and no multiple of a block

std::int16_t PcmAt(std::size_t i) {
    return static_cast<std::int16_t>(i * 7 % 30'011);
}

class ReadAheadTest : public testing::Test {
protected:
    ReadAheadTest() {
        std::vector<std::int16_t> pcm(kCount);
        for (std::size_t i = 0; i < pcm.size(); ++i) {
            pcm[i] = PcmAt(i);
        }
        WriteBytes(m_folder / "x.wav", MakeWav16({}, pcm));
        EXPECT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
    }

    /// Takes `count` samples in blocks of `block`, from sample `first` on.
    static void Take(CReadAhead& ahead, std::size_t first, std::size_t count, std::size_t block) {
        std::vector<float> samples(block);
        for (std::size_t i = 0; i < count; i += block) {
            samples.resize(std::min(block, count - i));
            ASSERT_EQ(ahead.Read(samples), kStatusOk);
            for (std::size_t k = 0; k < samples.size(); ++k) {
                ASSERT_EQ(samples[k], static_cast<float>(PcmAt(first + i + k)) / 32767.0f);
            }
        }
    }

    CTempFolder m_folder;
    CCancelFlag m_cancel;
    CAudioStream m_stream{&m_cancel};
};

} // namespace

TEST_F(ReadAheadTest, GivesTheStreamsSamplesInBlocksOfAnySize) {
    for (std::size_t const block : {6144U, 8192U, 8191U, 200'000U, 2'000'003U}) {
        ASSERT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
        CReadAhead ahead(m_stream);
        Take(ahead, 0, kCount, block);
        EXPECT_EQ(ahead.Finish(), kStatusOk);
    }
}

TEST_F(ReadAheadTest, ASlowTakerGetsTheSame) {
    CReadAhead ahead(m_stream);
    for (std::size_t first = 0; first < kCount; first += 100'000) {
        std::this_thread::sleep_for(std::chrono::milliseconds(3)); // the ring fills up meanwhile
        Take(ahead, first, std::min<std::size_t>(100'000, kCount - first), 6144);
    }
    EXPECT_EQ(ahead.Finish(), kStatusOk);
}

TEST_F(ReadAheadTest, MayBeLeftAtAnyMoment) {
    for (std::size_t const taken : {0U, 1U, 65'536U, 131'072U, 1'000'000U}) {
        ASSERT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
        CReadAhead ahead(m_stream);
        Take(ahead, 0, taken, 6144);
    }
    // The stream is whole after it.
    ASSERT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
    EXPECT_EQ(m_stream.GetCount(), static_cast<std::int32_t>(kCount));
}

TEST_F(ReadAheadTest, ACancelReachesWhoeverTakes) {
    CStatus status = kStatusOk;
    {
        CReadAhead ahead(m_stream);
        std::vector<float> samples(6144);
        ASSERT_EQ(ahead.Read(samples), kStatusOk);
        m_cancel.Set();
        for (std::size_t i = 0; i <= kCount && status == kStatusOk; i += samples.size()) {
            status = ahead.Read(samples);
        }
    }
    EXPECT_EQ(status, kStatusNothing);
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::Cancelled);
}

TEST_F(ReadAheadTest, AChangeOfTheFileIsToldAtTheEnd) {
    {
        CReadAhead ahead(m_stream);
        Take(ahead, 0, 6144, 6144);
        std::vector<float> rest(kCount - 6144);
        WriteText(m_folder / "x.wav", "something else");
        CStatus status = ahead.Read(rest);
        status = status == kStatusOk ? ahead.Finish() : status;
        EXPECT_EQ(status, kStatusFailure);
    }
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::Changed);
}
