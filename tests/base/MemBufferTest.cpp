// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/MemBuffer.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <vector>

namespace {

constexpr std::uint32_t kUntouched = 77;

// A buffer of `size` bytes 0, 1, 2, ...
void FillUpwards(CMemBuffer& buffer, std::uint32_t size) {
    std::uint8_t* const bytes = buffer.AllocMem(size);
    ASSERT_NE(bytes, nullptr);
    for (std::uint32_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i);
    }
}

} // namespace

TEST(MemBufferTest, StartsWithoutABlock) {
    CMemBuffer buffer;
    std::uint32_t size = kUntouched;
    EXPECT_EQ(buffer.GetMem(&size), nullptr);
    EXPECT_EQ(size, 0U);
}

TEST(MemBufferTest, HoldsTheBlockItTook) {
    CMemBuffer buffer;
    std::uint8_t* const block = buffer.AllocMem(12);
    ASSERT_NE(block, nullptr);
    std::memset(block, 1, 12);
    std::uint32_t size = 0;
    EXPECT_EQ(buffer.GetMem(&size), block);
    EXPECT_EQ(size, 12U);
    buffer.FreeMem();
    buffer.FreeMem();
    EXPECT_EQ(buffer.GetMem(&size), nullptr);
    EXPECT_EQ(size, 0U);
}

TEST(MemBufferTest, ANewBlockReplacesTheOld) {
    CMemBuffer buffer;
    ASSERT_NE(buffer.AllocMem(100), nullptr);
    ASSERT_NE(buffer.AllocMem(10), nullptr);
    std::uint32_t size = 0;
    buffer.GetMem(&size);
    EXPECT_EQ(size, 10U);
}

TEST(MemBufferTest, NullDestinationAsksForTheSize) {
    CMemBuffer buffer;
    std::uint32_t size = kUntouched;
    EXPECT_EQ(buffer.CopyTo(nullptr, &size), kStatusOk);
    EXPECT_EQ(size, 0U);
    FillUpwards(buffer, 5);
    EXPECT_EQ(buffer.CopyTo(nullptr, &size), kStatusOk);
    EXPECT_EQ(size, 5U);
}

TEST(MemBufferTest, CopiesWholeBlockIntoEnoughRoom) {
    CMemBuffer buffer;
    FillUpwards(buffer, 3);
    std::array<std::uint8_t, 4> room{9, 9, 9, 9};
    std::uint32_t size = 4;
    EXPECT_EQ(buffer.CopyTo(room.data(), &size), kStatusOk);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(room, (std::array<std::uint8_t, 4>{0, 1, 2, 9}));
    size = 3;
    EXPECT_EQ(buffer.CopyTo(room.data(), &size), kStatusOk);
    EXPECT_EQ(size, 3U);
}

TEST(MemBufferTest, RoomOneByteTooSmallChangesNothing) {
    CMemBuffer buffer;
    FillUpwards(buffer, 3);
    std::array<std::uint8_t, 2> room{9, 9};
    std::uint32_t size = 2;
    EXPECT_EQ(buffer.CopyTo(room.data(), &size), kStatusFailure);
    EXPECT_EQ(size, 2U);
    EXPECT_EQ(room, (std::array<std::uint8_t, 2>{9, 9}));
}

TEST(MemBufferTest, CopiesNothingFromNoBlock) {
    CMemBuffer buffer;
    std::uint8_t byte = 9;
    std::uint32_t size = 1;
    EXPECT_EQ(buffer.CopyTo(&byte, &size), kStatusOk);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(byte, 9);
}

TEST(MemBufferTest, CopyFromTakesABlockWhenNeeded) {
    CMemBuffer buffer;
    std::array<std::uint8_t, 3> const bytes{4, 5, 6};
    EXPECT_EQ(buffer.CopyFrom(bytes.data(), 3), kStatusOk);
    std::uint32_t size = 0;
    std::uint8_t const* const block = buffer.GetMem(&size);
    ASSERT_EQ(size, 3U);
    EXPECT_EQ(std::vector<std::uint8_t>(block, block + size), (std::vector<std::uint8_t>{4, 5, 6}));
}

TEST(MemBufferTest, CopyFromOfNothingNeedsABlock) {
    CMemBuffer buffer;
    std::uint8_t const byte = 1;
    EXPECT_EQ(buffer.CopyFrom(&byte, 0), kStatusFailure);
    EXPECT_EQ(buffer.CopyFrom(nullptr, 0), kStatusFailure);
    FillUpwards(buffer, 1);
    EXPECT_EQ(buffer.CopyFrom(nullptr, 0), kStatusOk);
}

TEST(MemBufferTest, PinsShorterCopyKeepsTheBlock) {
    CMemBuffer buffer;
    FillUpwards(buffer, 100);
    std::array<std::uint8_t, 10> bytes{};
    bytes.fill(200);
    EXPECT_EQ(buffer.CopyFrom(bytes.data(), 10), kStatusOk);
    std::uint32_t size = 0;
    std::uint8_t const* const block = buffer.GetMem(&size);
    ASSERT_EQ(size, 100U);
    EXPECT_EQ(block[0], 200);
    EXPECT_EQ(block[9], 200);
    EXPECT_EQ(block[10], 10);
    EXPECT_EQ(block[99], 99);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
namespace {

// Runs in a process of its own, whose address space is narrower than the block asked for.
[[noreturn]] void AskForMoreThanThereIs() {
    rlimit const narrow{std::uint64_t{1} << 30U, std::uint64_t{1} << 30U};
    CMemBuffer buffer;
    std::uint32_t size = kUntouched;
    std::uint8_t const byte = 1;
    bool const ok = buffer.AllocMem(8) != nullptr && setrlimit(RLIMIT_AS, &narrow) == 0 &&
                    buffer.AllocMem(0xFFFFFFFFU) == nullptr && buffer.GetMem(&size) == nullptr &&
                    size == 0 && buffer.CopyFrom(&byte, 0xFFFFFFFFU) == kStatusFailure &&
                    buffer.CopyFrom(&byte, 1) == kStatusOk;
    std::_Exit(ok ? 0 : 1);
}

} // namespace

TEST(MemBufferDeathTest, FailureLeavesNoBlockAndNoHarm) {
    EXPECT_EXIT(AskForMoreThanThereIs(), testing::ExitedWithCode(0), "");
}
#endif
