// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// One value of a notification: an opaque pointer, not owned, or UTF-8 text.
using CNotificationValue = std::variant<void*, std::string>;

/// What a notification carries, by key. A null pointer to it stands for "nothing".
using CUserInfo = std::map<std::string, CNotificationValue, std::less<>>;

/// Process-local notification centre. A posted notification is delivered at once, on the thread
/// that posts it, to the observers registered at that moment in the order of registration.
/// Thread: every operation is safe from any thread; no lock is held while an observer runs, so an
/// observer may post, add and remove observers.
class CNotificationCenter {
public:
    using Handler = std::function<void(CUserInfo const* userInfo)>;

    /// Calls `handler` for every later post of `name`. `observer` is the key for removal only.
    void AddObserver(void const* observer, std::string_view name, Handler handler);

    /// Ends every registration of `observer` for `name`. A delivery that another thread has begun
    /// may still be running when this returns.
    void RemoveObserver(void const* observer, std::string_view name);

    /// Delivers `name` with `userInfo`, which may be null, and returns after the last observer.
    void Post(std::string_view name, CUserInfo const* userInfo) const;

    /// The process's centre.
    static CNotificationCenter& Default();

private:
    struct CObserver {
        void const* m_pKey;
        std::string m_sName;
        std::shared_ptr<Handler const> m_pHandler;
    };

    mutable std::mutex m_lock;
    std::vector<CObserver> m_vObservers;
};

/// The pointer under `key`; null when there is none.
void* UserInfoPointer(CUserInfo const* userInfo, std::string_view key);

/// The text under `key`; empty when there is none.
std::string UserInfoText(CUserInfo const* userInfo, std::string_view key);

// Fixed: names and keys of the three notifications of an analysis.
inline constexpr char kFileProgressNotification[] = "BPMProfilerFileProgress";
inline constexpr char kFileCompleteNotification[] = "BPMProfilerFileComplete";
inline constexpr char kAnalysisCompleteNotification[] = "BPMAnalysisComplete";
inline constexpr char kUserDataKey[] = "userdata";
inline constexpr char kPercentKey[] = "percent";
inline constexpr char kBpmKey[] = "BPM";
