// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/RawTag.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include "base/CString.h"

#include <gtest/gtest.h>

TEST(RawTagTest, DigestTellsEveryChangedByte) {
    for (std::size_t const size : {3U, 10U, 11U, 18U, 26U, 100U}) {
        TagBytes const bytes = FakeAudio(size);
        CDigest const digest = DigestOf(bytes);
        EXPECT_EQ(DigestOf(bytes), digest);
        for (std::size_t i = 0; i < size; ++i) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                TagBytes changed = bytes;
                changed[i] = static_cast<std::uint8_t>(changed[i] ^ (1U << bit));
                EXPECT_FALSE(DigestOf(changed) == digest) << size << " " << i << " " << bit;
            }
        }
        TagBytes longer = bytes;
        longer.push_back(1);
        EXPECT_FALSE(DigestOf(longer) == digest);
    }
}

TEST(RawTagTest, LoadTakesTheDigestOfWhatStandsOnDisk) {
    CTempFolder folder;
    std::string const path = folder / "song.mp3";
    // Unsynchronised: the digest is of the bytes before decoding.
    TagBytes const tag = TagOf(3, {0xFF, 0x00, 0xE0, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06}, 0x80);
    for (TagBytes const& first : {tag, FakeAudio(10), FakeAudio(4), TagBytes()}) {
        WriteBytes(path, first.size() < 10 ? first : Joined({first, FakeAudio(30)}));
        CRawTag loaded;
        ASSERT_GE(loaded.Load(CString::FromPath(path)), 0);
        EXPECT_EQ(loaded.m_digest, DigestOf(first));
        EXPECT_EQ(DigestedBytes(loaded.m_nTagBytes, ReadBytes(path).size()), first.size());
    }
}
