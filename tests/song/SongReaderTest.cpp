// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongReader.h"

#include "platform/AudioStream.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <array>
#include <gtest/gtest.h>
#include <vector>

namespace {

class SongReaderTest : public testing::Test {
protected:
    /// A song of three samples, 1, 0 and -1.
    SongReaderTest() {
        WriteBytes(m_folder / "x.wav", MakeWav16({}, std::vector<std::int16_t>{32767, 0, -32767}));
        EXPECT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
    }

    static CStatus Load(CSongReader& reader, std::int64_t place, std::span<float> samples) {
        return reader.LoadPcm(reinterpret_cast<std::uint8_t*>(samples.data()), place,
                              static_cast<std::uint32_t>(samples.size_bytes()));
    }

    CTempFolder m_folder;
    CAudioStream m_stream;
};

} // namespace

TEST_F(SongReaderTest, GivesEverySampleOnceInOrder) {
    CSongReader reader(&m_stream);
    std::array<float, 2> two{};
    EXPECT_EQ(Load(reader, 0, two), kStatusOk);
    EXPECT_EQ(two, (std::array{1.0f, 0.0f}));
    EXPECT_EQ(Load(reader, 0, two), kStatusFailure); // gone
    EXPECT_EQ(Load(reader, 8, std::span(two).first(1)), kStatusOk);
    EXPECT_EQ(two[0], -1.0f);
}

TEST_F(SongReaderTest, TheLastSampleComesOnlyFromAFileThatIsStillTheSame) {
    CSongReader reader(&m_stream);
    std::array<float, 2> two{};
    EXPECT_EQ(Load(reader, 0, two), kStatusOk);
    WriteText(m_folder / "x.wav", "something else");
    EXPECT_EQ(Load(reader, 8, std::span(two).first(1)), kStatusFailure);
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::Changed);
}

TEST_F(SongReaderTest, TellsWhatAReaderTells) {
    CSongReader reader(&m_stream);
    std::uint32_t rate = 0;
    std::uint32_t bitRate = 0;
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    std::array<std::uint8_t, kFormatRecordBytes> record{};
    EXPECT_EQ(reader.IsValid(), kStatusOk);
    EXPECT_EQ(reader.GetSampleRate(&rate), kStatusOk);
    EXPECT_EQ(reader.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(reader.GetSampleCount(&count), kStatusOk);
    EXPECT_EQ(reader.GetFormatInfo(record.data(), &bitRate), kStatusOk);
    EXPECT_EQ(rate, 44'100U);
    EXPECT_EQ(bytes, 12);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(bitRate, 1'411'200U);
    EXPECT_EQ(record[0], 3); // samples are floats
}

TEST_F(SongReaderTest, ASongThatIsNotOpenHasNoSamples) {
    CSongReader reader(nullptr);
    std::int64_t bytes = 1;
    EXPECT_EQ(reader.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(bytes, 0);
    std::array<float, 1> one{};
    EXPECT_EQ(Load(reader, 0, one), kStatusFailure);
}
