// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// A QuickTime movie may keep its samples in another file, which it names. Such a file must never be
// opened: a stranger's song would else read whatever the person may read.

#include "platform/AudioDecoder.h"

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace {

constexpr std::uint32_t kFrames = 44100;
constexpr std::uint32_t kWavHeaderBytes = 44;

std::string Number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return text;
}

/// A box of the QuickTime File Format: size, type, body.
std::string Box(std::string const& type, std::string const& body) {
    return Number(static_cast<std::uint32_t>(body.size()) + 8, 4) + type + body;
}

std::string Zeros(std::size_t count) {
    return std::string(count, '\0');
}

/// A Mac OS alias record, version 2, that names its target by path alone.
std::string Alias(std::string const& path) {
    std::string const record = Zeros(4) + Number(0, 2) + Number(2, 2) + Zeros(2) + Zeros(28) +
                               Zeros(12) + Zeros(64) + Zeros(16) + Number(1, 2) + Number(1, 2) +
                               Zeros(16) + Number(2, 2) +
                               Number(static_cast<std::uint32_t>(path.size()), 2) + path +
                               Zeros(path.size() % 2) + Number(0xFFFF, 2) + Zeros(2);
    return Zeros(4) + record;
}

/// One second of 16-bit mono, all of whose samples lie behind the header of the WAV file `target`.
std::string MakeReferenceMovie(std::string const& target) {
    std::string const description = Zeros(6) + Number(1, 2) + Zeros(8) + Number(1, 2) +
                                    Number(16, 2) + Zeros(4) + Number(44100U << 16U, 4);
    std::string const table =
        Box("stsd", Zeros(4) + Number(1, 4) + Box("sowt", description)) +
        Box("stts", Zeros(4) + Number(1, 4) + Number(kFrames, 4) + Number(1, 4)) +
        Box("stsc", Zeros(4) + Number(1, 4) + Number(1, 4) + Number(kFrames, 4) + Number(1, 4)) +
        Box("stsz", Zeros(4) + Number(2, 4) + Number(kFrames, 4)) +
        Box("stco", Zeros(4) + Number(1, 4) + Number(kWavHeaderBytes, 4));
    std::string const information =
        Box("smhd", Zeros(8)) +
        Box("dinf", Box("dref", Zeros(4) + Number(1, 4) + Box("alis", Alias(target)))) +
        Box("stbl", table);
    std::string const media =
        Box("mdhd", Zeros(12) + Number(44100, 4) + Number(kFrames, 4) + Zeros(4)) +
        Box("hdlr", Zeros(4) + "mhlrsoun" + Zeros(12) + Zeros(1)) + Box("minf", information);
    std::string const track = Box("tkhd", Number(7, 4) + Zeros(8) + Number(1, 4) + Zeros(4) +
                                              Number(kFrames, 4) + Zeros(60)) +
                              Box("mdia", media);
    std::string const header =
        Zeros(12) + Number(44100, 4) + Number(kFrames, 4) + Zeros(76) + Number(2, 4);
    return Box("ftyp", "qt  " + Zeros(4) + "qt  ") +
           Box("moov", Box("mvhd", header) + Box("trak", track));
}

TEST(ReferenceMovieTest, ItsOtherFileStaysClosed) {
    CTempFolder const folder;
    WriteWav(folder / "other.wav", MakeClickTrack(120.0, 1.0));
    std::ofstream(folder / "song.m4a", std::ios::binary)
        << MakeReferenceMovie(folder / "other.wav");
    CAudioDecoder decoder;
    CDecodedAudio audio;
    EXPECT_EQ(decoder.Decode(folder / "song.m4a", audio), kStatusFailure);
    EXPECT_EQ(audio.m_nCount, 0);
    EXPECT_NE(decoder.GetReport().m_problem, EDecodeProblem::None);
}

} // namespace
