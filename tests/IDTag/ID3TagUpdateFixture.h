// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

// Songs whose tag has no room for a tempo (old, new) or just enough (roomy).

inline TagBytes const kAudio = FakeAudio(600'000);
inline TagBytes const kOld = Joined({TagOf(3, kTitle), kAudio});
inline TagBytes const kNew = Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(4096)})), kAudio});
inline TagBytes const kRoomy = Joined({TagOf(3, Joined({kTitle, Zeros(21)})), kAudio});
inline TagBytes const kRoomyNew = Joined({TagOf(3, Joined({kTitle, kTempo})), kAudio});

/// What one update came to.
struct CUpdate {
    CStatus m_nStatus = kStatusFailure;
    EWriteProblem m_eProblem = EWriteProblem::None;
    bool m_bRewritten = false;
};

inline CUpdate SetTempo(std::string const& path, wchar_t const* text = L"128") {
    CUpdate update;
    CID3Tag tag;
    (void)tag.OpenFile(CString::FromPath(path));
    (void)tag.SetString("TBPM", text);
    update.m_nStatus = tag.UpdateFile(&update.m_bRewritten);
    update.m_eProblem = tag.GetWriteProblem();
    return update;
}

inline struct stat LinkStat(std::string const& path) {
    struct stat info = {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
}

inline bool IsThere(std::string const& path) {
    struct stat info = {};
    return ::lstat(path.c_str(), &info) == 0;
}

/// A song, and what may happen to it.
class CID3TagUpdateFixture : public testing::Test {
protected:
    void SetUp() override { WriteBytes(m_sFile, kOld); }

    void ExpectSwapped() {
        CUpdate const update = SetTempo(m_sFile);
        EXPECT_EQ(update.m_nStatus, kStatusOk);
        EXPECT_TRUE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kNew);
        EXPECT_FALSE(IsThere(m_sTemporary));
    }

    void ExpectRefused(EWriteProblem problem) {
        CUpdate const update = SetTempo(m_sFile);
        EXPECT_EQ(update.m_nStatus, kStatusFailure);
        EXPECT_EQ(update.m_eProblem, problem);
        EXPECT_FALSE(update.m_bRewritten);
        EXPECT_EQ(ReadBytes(m_sFile), kOld);
    }

    CTempFolder m_folder;
    std::string const m_sFile = m_folder / "song.mp3";
    std::string const m_sTemporary = m_folder / "song.MP~";
    std::string const m_sOther = m_folder / "other";
};
