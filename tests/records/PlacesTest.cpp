// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Places.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace {

/// Gives the environment back what a test changes.
class PlacesTest : public testing::Test {
protected:
    void SetUp() override {
        for (char const* const name :
             {"XDG_STATE_HOME", "XDG_CACHE_HOME", "HOME", "TACTUS_NO_RECORDS"}) {
            char const* const value = std::getenv(name);
            m_vKept.emplace_back(name, value != nullptr ? std::optional<std::string>(value)
                                                        : std::nullopt);
            (void)::unsetenv(name);
        }
    }
    void TearDown() override {
        for (auto const& [name, value] : m_vKept) {
            (void)(value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name));
        }
    }

    std::vector<std::pair<char const*, std::optional<std::string>>> m_vKept;
};

TEST_F(PlacesTest, HomeHasAFolderForEach) {
    (void)::setenv("HOME", "/home/x", 1);
    EXPECT_EQ(StateFolder(), "/home/x/.local/state/tactus");
    EXPECT_EQ(CacheFolder(), "/home/x/.cache/tactus");
}

TEST_F(PlacesTest, NamedFoldersComeFirst) {
    (void)::setenv("HOME", "/home/x", 1);
    (void)::setenv("XDG_STATE_HOME", "/s", 1);
    (void)::setenv("XDG_CACHE_HOME", "/c", 1);
    EXPECT_EQ(StateFolder(), "/s/tactus");
    EXPECT_EQ(CacheFolder(), "/c/tactus");
}

TEST_F(PlacesTest, LockLiesWithTheStateAlsoWhereNothingIsKept) {
    (void)::setenv("XDG_STATE_HOME", "/s", 1);
    EXPECT_EQ(LockFolder(), "/s/tactus");
    (void)::setenv("TACTUS_NO_RECORDS", "1", 1);
    EXPECT_EQ(LockFolder(), "/s/tactus");
    EXPECT_EQ(StateFolder(), "");
}

TEST_F(PlacesTest, RelativeFoldersDoNotCount) {
    // The specification has them ignored.
    (void)::setenv("HOME", "/home/x", 1);
    (void)::setenv("XDG_STATE_HOME", "here", 1);
    EXPECT_EQ(StateFolder(), "/home/x/.local/state/tactus");
    (void)::setenv("HOME", "there", 1);
    EXPECT_EQ(StateFolder(), "");
}

TEST_F(PlacesTest, WithoutAHomeThereIsNone) {
    EXPECT_EQ(StateFolder(), "");
    EXPECT_EQ(CacheFolder(), "");
}

TEST_F(PlacesTest, NothingIsKeptWhenThePersonSaysSo) {
    (void)::setenv("HOME", "/home/x", 1);
    (void)::setenv("XDG_CACHE_HOME", "/c", 1);
    (void)::setenv("TACTUS_NO_RECORDS", "1", 1);
    EXPECT_EQ(StateFolder(), "");
    EXPECT_EQ(CacheFolder(), "");
    (void)::setenv("TACTUS_NO_RECORDS", "", 1);
    EXPECT_EQ(CacheFolder(), "/c/tactus");
}

} // namespace
