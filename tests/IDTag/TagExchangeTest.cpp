// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagExchange.h"

#include "IDTag/TagStore.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

constexpr std::int64_t kOldTime = 1'000'000'000'123'456'789; // nanoseconds; September 2001

/// Keeps copies of what it was told.
class CKeptChange final : public ITagWitness {
public:
    void OnWriting(CTagChange const& change) override {
        m_sPath = change.m_sPath.ToPath();
        m_sFrameId = change.m_sFrameId;
        m_before = change.m_before;
        m_textBefore = change.m_textBefore;
        m_textAfter = change.m_textAfter;
        m_vOldTag.assign(change.m_oldTag.begin(), change.m_oldTag.end());
        m_vNewTag.assign(change.m_newTag.begin(), change.m_newTag.end());
        m_vFileThen = ReadBytes(m_sPath);
        ++m_nBegun;
    }
    void OnWritten(std::optional<CFileIdentity> const& after) override {
        m_after = after;
        ++m_nEnded;
    }

    std::string m_sPath;
    std::string m_sFrameId;
    CFileIdentity m_before;
    std::optional<CString> m_textBefore;
    std::optional<CString> m_textAfter;
    TagBytes m_vOldTag;
    TagBytes m_vNewTag;
    TagBytes m_vFileThen;
    std::optional<CFileIdentity> m_after;
    int m_nBegun = 0;
    int m_nEnded = 0;
};

class TagExchangeTest : public testing::Test {
protected:
    CFileIdentity Identity() const { return IdentityAt(m_sPath).value_or(CFileIdentity()); }

    EWriteProblem Store(char const* text, bool keepsTime = false) {
        CTagStoreOptions options;
        options.m_pWitness = &m_kept;
        options.m_bKeepTime = keepsTime;
        return StoreTagText(CString::FromPath(m_sPath), "TBPM", CString(text), options);
    }

    EWriteProblem GoBack(std::optional<std::int64_t> time) {
        CFileIdentity after;
        CTagChange const change = {CString::FromPath(m_sPath), Identity(),      "TBPM", {}, {},
                                   m_kept.m_vNewTag,           m_kept.m_vOldTag};
        return ExchangeTag(change, time, nullptr, &after);
    }

    /// A write of `bytes`, and back again.
    void ExpectWayBack(TagBytes const& bytes) {
        WriteBytes(m_sPath, bytes);
        std::int64_t const time = Identity().m_nWrittenTime;
        ASSERT_EQ(Store("128.00"), EWriteProblem::None);
        ASSERT_NE(ReadBytes(m_sPath), bytes);
        ASSERT_EQ(GoBack(time), EWriteProblem::None);
        EXPECT_EQ(ReadBytes(m_sPath), bytes);
        EXPECT_EQ(Identity().m_nWrittenTime, time);
    }

    CTempFolder m_folder;
    std::string m_sPath = m_folder / "a.mp3";
    CKeptChange m_kept;
};

TEST_F(TagExchangeTest, WitnessSeesTheFileBeforeTheFirstByteIsWritten) {
    TagBytes const tag = TagOf(3, Joined({Frame23("TBPM", Latin1Text("97")), Zeros(40)}));
    TagBytes const file = Joined({tag, kSound});
    WriteBytes(m_sPath, file);
    CFileIdentity const before = Identity();
    ASSERT_EQ(Store("128.00"), EWriteProblem::None);
    EXPECT_EQ(m_kept.m_sPath, m_sPath);
    EXPECT_EQ(m_kept.m_sFrameId, "TBPM");
    EXPECT_EQ(m_kept.m_before, before);
    EXPECT_EQ(m_kept.m_textBefore, CString("97"));
    EXPECT_EQ(m_kept.m_textAfter, CString("128.00"));
    EXPECT_EQ(m_kept.m_vFileThen, file);
    EXPECT_EQ(m_kept.m_vOldTag, tag);
    EXPECT_EQ(Joined({m_kept.m_vNewTag, kSound}), ReadBytes(m_sPath));
    EXPECT_EQ(m_kept.m_after, Identity());
    EXPECT_EQ(m_kept.m_nBegun, 1);
    EXPECT_EQ(m_kept.m_nEnded, 1);
}

TEST_F(TagExchangeTest, WitnessHearsNothingOfATextThatStandsThere) {
    WriteBytes(m_sPath, Joined({TagOf(3, Frame23("TBPM", Latin1Text("128.00"))), kSound}));
    ASSERT_EQ(Store("128.00"), EWriteProblem::None);
    EXPECT_EQ(m_kept.m_nBegun, 0);
    EXPECT_EQ(m_kept.m_nEnded, 0);
}

TEST_F(TagExchangeTest, WitnessIsToldOfAFailure) {
    // A folder under the new file's name; without a tag there is no way around a new file.
    WriteBytes(m_sPath, kSound);
    ASSERT_EQ(::mkdir((m_folder / "a.MP~").c_str(), 0700), 0);
    EXPECT_EQ(Store("128.00"), EWriteProblem::NoTemporaryFile);
    EXPECT_EQ(m_kept.m_nBegun, 1);
    EXPECT_EQ(m_kept.m_nEnded, 1);
    EXPECT_FALSE(m_kept.m_textBefore);
    EXPECT_FALSE(m_kept.m_after);
    EXPECT_EQ(ReadBytes(m_sPath), kSound);
}

TEST_F(TagExchangeTest, EveryTagComesBackByteForByte) {
    TagBytes const title = Frame23("TIT2", Latin1Text("Title"));
    ExpectWayBack(kSound);                                                 // no tag
    ExpectWayBack(Joined({TagOf(3, title), kSound}));                      // without room
    ExpectWayBack(Joined({TagOf(3, Joined({title, Zeros(99)})), kSound})); // in place
    ExpectWayBack(Joined({TagOf(4, Frame24("TIT2", {3, 'x'})), kSound}));  // another version
    ExpectWayBack(Joined({TagOf(2, Frame22("TT2", Latin1Text("x"))), kSound}));
    // Two texts in one frame, of which a write keeps none.
    ExpectWayBack(Joined({TagOf(3, Frame23("TBPM", {0, '9', '0', 0, '9', '1'})), kSound}));
}

TEST_F(TagExchangeTest, OnlyTheTagThatIsExpectedGivesWay) {
    TagBytes const file = Joined({TagOf(3, Frame23("TBPM", Latin1Text("97"))), kSound});
    WriteBytes(m_sPath, file);
    ASSERT_EQ(Store("128.00"), EWriteProblem::None);
    WriteBytes(m_sPath, Joined({TagOf(3, Frame23("TBPM", Latin1Text("98"))), kSound}));
    TagBytes const changed = ReadBytes(m_sPath);
    EXPECT_EQ(GoBack(std::nullopt), EWriteProblem::Changed);
    EXPECT_EQ(ReadBytes(m_sPath), changed);
}

TEST_F(TagExchangeTest, TimeOfTheLastWriteIsKeptWhenAsked) {
    for (TagBytes const& file :
         {kSound,
          Joined({TagOf(3, Joined({Frame23("TBPM", Latin1Text("97")), Zeros(40)})), kSound})}) {
        WriteBytes(m_sPath, file);
        timespec const times[] = {{0, UTIME_NOW}, {kOldTime / 1'000'000'000, 123'456'789}};
        ASSERT_EQ(::utimensat(AT_FDCWD, m_sPath.c_str(), times, 0), 0);
        ASSERT_EQ(Store("128.00", true), EWriteProblem::None);
        EXPECT_EQ(Identity().m_nWrittenTime, kOldTime);
        ASSERT_EQ(Store("129.00"), EWriteProblem::None);
        EXPECT_GT(Identity().m_nWrittenTime, kOldTime);
    }
}

TEST_F(TagExchangeTest, AFrameIsTakenOutAndTheOthersStay) {
    TagBytes const title = Frame23("TIT2", Latin1Text("Title"));
    WriteBytes(m_sPath,
               Joined({TagOf(3, Joined({Frame23("TBPM", Latin1Text("97")), title})), kSound}));
    CTagStoreReport report;
    EXPECT_EQ(TakeOutTagText(CString::FromPath(m_sPath), "TBPM", {}, &report), EWriteProblem::None);
    EXPECT_TRUE(report.m_bWritten);
    // In the same bytes: the frame's 13 are zeros at the end.
    EXPECT_EQ(ReadBytes(m_sPath), Joined({TagOf(3, Joined({title, Zeros(13)})), kSound}));
    EXPECT_EQ(TakeOutTagText(CString::FromPath(m_sPath), "TBPM", {}, &report), EWriteProblem::None);
    CTagStoreReport again;
    EXPECT_EQ(TakeOutTagText(CString::FromPath(m_sPath), "TBPM", {}, &again), EWriteProblem::None);
    EXPECT_FALSE(again.m_bWritten);
}

} // namespace
