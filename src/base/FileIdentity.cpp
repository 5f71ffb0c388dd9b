// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileIdentity.h"

#include <chrono>
#include <ctime>
#include <sys/stat.h>
#include <thread>

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kFineStep = 10'000'000; // Derived: 100 ticks a second, the slowest kernel.
constexpr std::int64_t kCoarseStep = 2'000'000'000; // Standard: the FAT file systems.

std::int64_t NanosecondsOf(timespec const& time) {
    return std::int64_t{time.tv_sec} * kNanosecondsPerSecond + time.tv_nsec;
}

/// Nanoseconds until a change would show; 0 when it does.
std::int64_t TimeToWait(CFileIdentity const& identity) {
    bool const isWhole = identity.m_nChangedTime % kNanosecondsPerSecond == 0;
    std::int64_t const step = isWhole ? kCoarseStep : kFineStep;
    timespec now = {};
    (void)::clock_gettime(CLOCK_REALTIME, &now);
    std::int64_t const rest = identity.m_nChangedTime + step - NanosecondsOf(now);
    // A change in the future is another machine's clock: there is no telling how long to wait.
    return rest > 0 && rest <= step ? rest : 0;
}

} // namespace

CFileIdentity IdentityOf(struct stat const& status) {
    return {.m_nDevice = status.st_dev,
            .m_nInode = status.st_ino,
            .m_nSize = status.st_size,
            .m_nWrittenTime = NanosecondsOf(status.st_mtim),
            .m_nChangedTime = NanosecondsOf(status.st_ctim)};
}

std::optional<CFileIdentity> IdentityOf(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return IdentityOf(status);
}

std::optional<CFileIdentity> IdentityAt(std::string const& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return IdentityOf(status);
}

bool WouldChangesShow(CFileIdentity const& identity) {
    return TimeToWait(identity) == 0;
}

void WaitUntilChangesShow(CFileIdentity const& identity) {
    std::int64_t const rest = TimeToWait(identity);
    if (rest > 0) {
        std::this_thread::sleep_for(std::chrono::nanoseconds(rest));
    }
}
