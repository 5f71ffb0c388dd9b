// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/NotificationCenter.h"

#include <utility>

void CNotificationCenter::AddObserver(void const* observer, std::string_view name,
                                      Handler handler) {
    std::scoped_lock const guard(m_lock);
    m_vObservers.push_back(
        {observer, std::string(name), std::make_shared<Handler const>(std::move(handler))});
}

void CNotificationCenter::RemoveObserver(void const* observer, std::string_view name) {
    std::scoped_lock const guard(m_lock);
    std::erase_if(m_vObservers, [&](CObserver const& entry) {
        return entry.m_pKey == observer && entry.m_sName == name;
    });
}

void CNotificationCenter::Post(std::string_view name, CUserInfo const* userInfo) const {
    std::vector<std::shared_ptr<Handler const>> handlers;
    {
        std::scoped_lock const guard(m_lock);
        for (CObserver const& entry : m_vObservers) {
            if (entry.m_sName == name) {
                handlers.push_back(entry.m_pHandler);
            }
        }
    }
    for (auto const& handler : handlers) {
        (*handler)(userInfo);
    }
}

CNotificationCenter& CNotificationCenter::Default() {
    static CNotificationCenter centre;
    return centre;
}

void* UserInfoPointer(CUserInfo const* userInfo, std::string_view key) {
    if (userInfo == nullptr) {
        return nullptr;
    }
    auto const found = userInfo->find(key);
    if (found == userInfo->end()) {
        return nullptr;
    }
    void* const* pointer = std::get_if<void*>(&found->second);
    return pointer != nullptr ? *pointer : nullptr;
}

std::string UserInfoText(CUserInfo const* userInfo, std::string_view key) {
    if (userInfo == nullptr) {
        return {};
    }
    auto const found = userInfo->find(key);
    if (found == userInfo->end()) {
        return {};
    }
    std::string const* text = std::get_if<std::string>(&found->second);
    return text != nullptr ? *text : std::string();
}
