// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/FileFronts.h"

#include "IDTag/PosixFile.h"
#include "support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>

namespace {

class FileFrontsTest : public testing::Test {
protected:
    CFileFronts Fronts(std::string const& before, std::string const& after) {
        WriteText(m_folder / "before", before);
        WriteText(m_folder / "after", after);
        CDescriptor const one(::open((m_folder / "before").c_str(), O_RDONLY | O_CLOEXEC));
        CDescriptor const other(::open((m_folder / "after").c_str(), O_RDONLY | O_CLOEXEC));
        return FrontsOf(one.Get(), other.Get());
    }

    /// Holds what the fronts are.
    void Expect(std::string const& before, std::string const& after, std::string const& oldFront,
                std::string const& newFront) {
        CFileFronts const fronts = Fronts(before, after);
        EXPECT_TRUE(fronts.m_bIsKnown);
        EXPECT_EQ(std::string(fronts.m_vOld.begin(), fronts.m_vOld.end()), oldFront);
        EXPECT_EQ(std::string(fronts.m_vNew.begin(), fronts.m_vNew.end()), newFront);
    }

    CTempFolder m_folder;
};

TEST_F(FileFrontsTest, WhatIsTheSameToTheEndIsLeftOut) {
    Expect("headAUDIO", "longer headAUDIO", "", "longer ");
    Expect("oldAUDIO", "newAUDIO", "old", "new");
    Expect("AUDIO", "AUDIO", "", "");
    Expect("AUDIOold", "AUDIOnew", "AUDIOold", "AUDIOnew");
    Expect("", "new", "", "new");
    // Longer than what is compared at a time.
    std::string const audio(200'000, 'x');
    Expect("a" + audio, "bc" + audio, "a", "bc");
}

TEST_F(FileFrontsTest, LongFrontsAreNotKept) {
    std::string const audio(4'194'304, 'x');
    EXPECT_TRUE(Fronts(audio, audio.substr(1) + "y").m_bIsKnown);
    CFileFronts const fronts = Fronts(audio, audio + "y");
    EXPECT_FALSE(fronts.m_bIsKnown);
    EXPECT_TRUE(fronts.m_vOld.empty());
    EXPECT_TRUE(fronts.m_vNew.empty());
}

} // namespace
