// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

// Sanitizers need the address space themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kThreadsCanBeDenied = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kThreadsCanBeDenied = false;
#else
inline constexpr bool kThreadsCanBeDenied = true;
#endif
#else
inline constexpr bool kThreadsCanBeDenied = true;
#endif

/// While one of these lives, no thread can be had in this process: its stack of 8 MB has no room.
/// Small pieces of memory still have. Only where `kThreadsCanBeDenied`, and in a process that had
/// no other threads, whose room would be left over.
class CNoThreads {
public:
    CNoThreads() {
        (void)getrlimit(RLIMIT_AS, &m_before);
        constexpr rlim_t kRoomBytes = 2'000'000;
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        rlimit const limit = {pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kRoomBytes,
                              m_before.rlim_max};
        (void)setrlimit(RLIMIT_AS, &limit);
    }
    ~CNoThreads() { (void)setrlimit(RLIMIT_AS, &m_before); }
    CNoThreads(CNoThreads const&) = delete;
    CNoThreads& operator=(CNoThreads const&) = delete;

private:
    rlimit m_before = {};
};
