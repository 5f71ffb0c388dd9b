// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Utf16.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf16Test, TellsUtf8FromOtherBytes) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("na\xC3\xAFve \xF0\x9F\x8E\xB5"));
    EXPECT_FALSE(IsUtf8("na\xEFve"));
    EXPECT_FALSE(IsUtf8("\xC3"));
    EXPECT_FALSE(IsUtf8("\xED\xA0\x80")); // a surrogate
    EXPECT_FALSE(IsUtf8("\xC0\x80"));     // an overlong zero
}

} // namespace
