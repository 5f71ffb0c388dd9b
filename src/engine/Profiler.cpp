// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/Profiler.h"

#include "base/NotificationCenter.h"

#include <array>
#include <cstdio>

void CProfiler::SendProfileProgress(std::uint8_t percent) {
    if (m_sink) {
        m_sink(percent);
        return;
    }
    std::array<char, 8> text{};
    (void)std::snprintf(text.data(), text.size(), "%2d%%", int{percent});
    CUserInfo const userInfo{{kUserDataKey, m_pUserData}, {kPercentKey, std::string(text.data())}};
    CNotificationCenter::Default().Post(kFileProgressNotification, &userInfo);
}
