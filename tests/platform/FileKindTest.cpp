// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/FileKind.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::vector<std::uint8_t> Bytes(std::string const& text) {
    return {text.begin(), text.end()};
}

EFileKind KindOf(std::string const& text) {
    return FileKindOf(Bytes(text));
}

using namespace std::string_literals;

TEST(FileKindTest, MarksOfKindsThatAreReadAndThatAreNot) {
    EXPECT_EQ(KindOf("RIFF\x10\0\0\0WAVEfmt "s), EFileKind::Read);
    EXPECT_EQ(KindOf("FORM\0\0\0\x10"
                     "AIFC"s),
              EFileKind::Read);
    EXPECT_EQ(KindOf("\0\0\0\x20"
                     "ftypM4A "s),
              EFileKind::Read);
    EXPECT_EQ(KindOf("\x1A\x45\xDF\xA3\x9F"s), EFileKind::Read);
    EXPECT_EQ(KindOf("wvpk"s), EFileKind::Read);
    EXPECT_EQ(KindOf("RIFF\x10\0\0\0AVI LIST"s), EFileKind::Other);
    EXPECT_EQ(KindOf("MPCK"s), EFileKind::Other);
}

TEST(FileKindTest, WhatHasNoMarkIsUnknown) {
    EXPECT_EQ(KindOf(""), EFileKind::Unknown);
    EXPECT_EQ(KindOf("wvp"), EFileKind::Unknown); // too short for its mark
    EXPECT_EQ(KindOf("<!DOCTYPE html>"), EFileKind::Unknown);
    EXPECT_EQ(KindOf("\xFF\xD8\xFF\xE0\0\x10JFIF"s), EFileKind::Unknown);
}

TEST(FileKindTest, FreeFormatTakesTwoFramesAlike) {
    // MPEG-1, layer III, no bit rate, 44100 Hz; the second with its padding bit.
    std::string const first = "\xFF\xFB\x00\x00"s;
    std::string const second = "\xFF\xFB\x02\x00"s;
    std::string const rest(400, 'x');
    EXPECT_EQ(KindOf(first + rest + second + rest), EFileKind::FreeFormat);
    EXPECT_EQ(KindOf(first + rest), EFileKind::Unknown);
    EXPECT_EQ(KindOf(first + rest + "\xFF\xFB\x90\x00"s + rest), EFileKind::Unknown);
    EXPECT_EQ(KindOf("\xFF\xFB\x90\x00"s + rest + second), EFileKind::Unknown); // 128 kbit/s
    EXPECT_EQ(KindOf("\xFF\xFB\x0C\x00"s + rest + second), EFileKind::Unknown); // reserved rate
}

TEST(FileKindTest, ATagInFrontHasSevenBitsAByteAndMaybeAFooter) {
    EXPECT_EQ(LeadingTagBytes(Bytes("ID3\3\0\0\0\0\2\1"s)), 10 + 2 * 128 + 1);
    EXPECT_EQ(LeadingTagBytes(Bytes("ID3\4\0\x10\0\0\2\1"s)), 10 + 2 * 128 + 1 + 10);
    EXPECT_EQ(LeadingTagBytes(Bytes("ID3\3\0\0\0\0\2"s)), 0);
    EXPECT_EQ(LeadingTagBytes(Bytes("RIFF\0\0\0\0WAVE"s)), 0);
}

} // namespace
