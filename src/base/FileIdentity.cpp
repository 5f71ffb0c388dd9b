// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileIdentity.h"

#include <sys/stat.h>

namespace {

std::int64_t NanosecondsOf(timespec const& time) {
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    return std::int64_t{time.tv_sec} * kNanosecondsPerSecond + time.tv_nsec;
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
