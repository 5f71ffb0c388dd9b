// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/Profiler.h"

#include "base/NotificationCenter.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Remembers the last progress notification for as long as it lives.
class CProgressEar {
public:
    CProgressEar() {
        CNotificationCenter::Default().AddObserver(
            this, kFileProgressNotification, [this](CUserInfo const* userInfo) {
                m_sPercent = UserInfoText(userInfo, kPercentKey);
                m_pUserData = UserInfoPointer(userInfo, kUserDataKey);
                m_nKeys = userInfo->size();
                m_thread = std::this_thread::get_id();
            });
    }
    ~CProgressEar() {
        CNotificationCenter::Default().RemoveObserver(this, kFileProgressNotification);
    }
    CProgressEar(CProgressEar const&) = delete;
    CProgressEar& operator=(CProgressEar const&) = delete;

    std::string m_sPercent;
    void* m_pUserData = nullptr;
    std::size_t m_nKeys = 0;
    std::thread::id m_thread;
};

std::string PercentText(std::uint8_t percent) {
    CProgressEar const ear;
    CProfiler profiler(nullptr);
    profiler.SendProfileProgress(percent);
    return ear.m_sPercent;
}

} // namespace

TEST(ProfilerTest, PercentIsPaddedToTwoDigits) {
    EXPECT_EQ(PercentText(0), " 0%");
    EXPECT_EQ(PercentText(7), " 7%");
    EXPECT_EQ(PercentText(95), "95%");
    EXPECT_EQ(PercentText(100), "100%");
    EXPECT_EQ(PercentText(255), "255%");
}

TEST(ProfilerTest, HandsOnItsUserDataBeforeItReturns) {
    int row = 0;
    CProgressEar const ear;
    CProfiler profiler(&row);
    profiler.SendProfileProgress(50);
    EXPECT_EQ(ear.m_pUserData, &row);
    EXPECT_EQ(ear.m_nKeys, 2U);
    EXPECT_EQ(ear.m_thread, std::this_thread::get_id());
}

TEST(ProfilerTest, CancelSetsItsOwnFlag) {
    CProfiler profiler(nullptr);
    EXPECT_FALSE(profiler.IsCancelled());
    profiler.CancelProfile();
    EXPECT_TRUE(profiler.IsCancelled());
}

TEST(ProfilerTest, SinkHearsThePercentsAndTheCentreDoesNot) {
    CProgressEar const ear;
    std::vector<int> percents;
    CProfiler profiler(nullptr);
    profiler.SetSink([&](std::uint8_t percent) { percents.push_back(percent); });
    profiler.SendProfileProgress(0);
    profiler.SendProfileProgress(100);
    EXPECT_EQ(percents, (std::vector<int>{0, 100}));
    EXPECT_EQ(ear.m_nKeys, 0U);
    profiler.SetSink(nullptr);
    profiler.SendProfileProgress(7);
    EXPECT_EQ(ear.m_sPercent, " 7%");
}
