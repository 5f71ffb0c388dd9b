// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/NotificationCenter.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

TEST(NotificationCenterTest, DeliversOnThePostingThreadBeforePostReturns) {
    CNotificationCenter centre;
    std::thread::id seen;
    centre.AddObserver(&centre, "name",
                       [&](CUserInfo const*) { seen = std::this_thread::get_id(); });
    centre.Post("name", nullptr);
    EXPECT_EQ(seen, std::this_thread::get_id());
}

TEST(NotificationCenterTest, CallsObserversInOrderOfRegistration) {
    CNotificationCenter centre;
    std::string order;
    centre.AddObserver(&order, "name", [&](CUserInfo const*) { order += "a"; });
    centre.AddObserver(&order, "other", [&](CUserInfo const*) { order += "x"; });
    centre.AddObserver(&order, "name", [&](CUserInfo const*) { order += "b"; });
    centre.Post("name", nullptr);
    EXPECT_EQ(order, "ab");
}

TEST(NotificationCenterTest, AnObserverMayRemoveItselfAndPost) {
    CNotificationCenter centre;
    int calls = 0;
    centre.AddObserver(&calls, "name", [&](CUserInfo const*) {
        ++calls;
        centre.RemoveObserver(&calls, "name");
        centre.Post("name", nullptr);
    });
    centre.Post("name", nullptr);
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenterTest, CarriesPointersAndTextByKey) {
    int row = 0;
    CUserInfo const info{{kUserDataKey, &row}, {kPercentKey, std::string("95%")}};
    EXPECT_EQ(UserInfoPointer(&info, kUserDataKey), &row);
    EXPECT_EQ(UserInfoText(&info, kPercentKey), "95%");
    EXPECT_EQ(UserInfoPointer(&info, kPercentKey), nullptr);
    EXPECT_EQ(UserInfoText(nullptr, kPercentKey), "");
}
